#include "Blocks.h"

#include <cstring>

namespace radiosim {

void* Blocks::allocate(std::size_t size) {
    auto memory = std::make_unique<std::byte[]>(size);
    void* const address = memory.get();
    const std::lock_guard lock(m_mutex);
    m_blocks.emplace(address, Block{std::move(memory), size});
    return address;
}

void* Blocks::handOut(const Bytes& content) {
    void* const block = allocate(content.size());
    if (!content.empty()) {
        std::memcpy(block, content.data(), content.size());
    }
    return block;
}

void Blocks::free(void* block) {
    if (block == nullptr) {
        return;
    }
    const std::lock_guard lock(m_mutex);
    if (m_blocks.erase(block) == 0) {
        ++m_badFrees;
    }
}

std::size_t Blocks::count() const {
    const std::lock_guard lock(m_mutex);
    return m_blocks.size();
}

std::size_t Blocks::bytes() const {
    const std::lock_guard lock(m_mutex);
    std::size_t sum = 0;
    for (const auto& [address, block] : m_blocks) {
        sum += block.size;
    }
    return sum;
}

std::size_t Blocks::badFrees() const {
    const std::lock_guard lock(m_mutex);
    return m_badFrees;
}

} // namespace radiosim
