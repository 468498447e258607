#include "Blocks.h"

#include <cstring>

namespace radiosim {

void* Blocks::allocate(std::size_t size, const char* giver) {
    auto memory = std::make_unique<std::byte[]>(size);
    void* const address = memory.get();
    const std::lock_guard lock(m_mutex);
    m_blocks.emplace(address, Block{std::move(memory), size, giver});
    Sum& sum = m_handedOut[giver];
    ++sum.count;
    sum.bytes += size;
    return address;
}

void* Blocks::handOut(const Bytes& content, const char* giver) {
    void* const block = allocate(content.size(), giver);
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

Blocks::Sum Blocks::live() const {
    const std::lock_guard lock(m_mutex);
    Sum sum{m_blocks.size()};
    for (const auto& [address, block] : m_blocks) {
        sum.bytes += block.size;
    }
    return sum;
}

Blocks::Sum Blocks::liveOf(std::string_view giver) const {
    const std::lock_guard lock(m_mutex);
    Sum sum;
    for (const auto& [address, block] : m_blocks) {
        if (block.giver == giver) {
            ++sum.count;
            sum.bytes += block.size;
        }
    }
    return sum;
}

Blocks::Sum Blocks::handedOutBy(std::string_view giver) const {
    const std::lock_guard lock(m_mutex);
    const auto found = m_handedOut.find(giver);
    return found == m_handedOut.end() ? Sum{} : found->second;
}

std::size_t Blocks::badFrees() const {
    const std::lock_guard lock(m_mutex);
    return m_badFrees;
}

} // namespace radiosim
