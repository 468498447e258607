// The memory that the service hands to its client, each block exactly as long as it says, so that
// a sanitizer sees a client read past one.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace radiosim {

using Bytes = std::vector<std::byte>;

/// Owns every block until the client frees it. Any thread.
class Blocks {
public:
    void* handOut(const Bytes& content);
    void* allocate(std::size_t size);
    /// A null pointer is none, and no mistake.
    void free(void* block);

    std::size_t count() const;
    std::size_t bytes() const;
    /// Frees of what is not a block.
    std::size_t badFrees() const;

private:
    struct Block {
        std::unique_ptr<std::byte[]> memory;
        std::size_t size;
    };

    mutable std::mutex m_mutex;
    std::map<const void*, Block> m_blocks;
    std::size_t m_badFrees = 0;
};

} // namespace radiosim
