// The memory that the service hands to its client, each block exactly as long as it says, so that
// a sanitizer sees a client read past one.
#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace radiosim {

using Bytes = std::vector<std::byte>;

/// Owns every block until the client frees it. Any thread.
class Blocks {
public:
    /// `giver` is the function that hands the block out.
    void* handOut(const Bytes& content, const char* giver);
    void* allocate(std::size_t size, const char* giver);
    /// A null pointer is none, and no mistake.
    void free(void* block);

    struct Sum {
        std::size_t count = 0;
        std::size_t bytes = 0;
    };
    /// What has not been freed.
    Sum live() const;
    /// The same of the blocks of one giver.
    Sum liveOf(std::string_view giver) const;
    /// All that one giver has handed out so far, freed or not.
    Sum handedOutBy(std::string_view giver) const;
    /// Frees of what is not a block.
    std::size_t badFrees() const;

private:
    struct Block {
        std::unique_ptr<std::byte[]> memory;
        std::size_t size;
        const char* giver;
    };

    mutable std::mutex m_mutex;
    std::map<const void*, Block> m_blocks;
    std::map<std::string, Sum, std::less<>> m_handedOut;
    std::size_t m_badFrees = 0;
};

} // namespace radiosim
