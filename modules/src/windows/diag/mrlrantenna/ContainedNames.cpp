#include "ContainedNames.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

namespace {

constexpr std::size_t FIRST_CAPACITY = 128;

// An odd number with bits all over. Collisions cost a comparison, never an answer.
constexpr std::uint64_t BASE = 0x9E3779B97F4A7C15U;

constexpr std::uint64_t extended(std::uint64_t hash, mrl::Char unit) {
    return hash * BASE + static_cast<mrl::Uint16>(unit) + 1;
}

std::uint64_t hashOf(mrl::CharView text) {
    std::uint64_t hash = 0;
    for (const mrl::Char unit : text) {
        hash = extended(hash, unit);
    }
    return hash;
}

} // namespace

void ContainedNames::clear() {
    if (m_round == std::numeric_limits<mrl::Uint32>::max()) {
        m_entries.clear(); // the number of a round must not come again
        m_round = 0;
    }
    ++m_round;
    m_units.clear();
    m_lengths.fill(0);
    m_longNames.clear();
    m_size = 0;
    m_hasEmptyName = false;
}

void ContainedNames::add(mrl::CharView name) {
    ++m_size;
    if (name.empty()) {
        m_hasEmptyName = true;
        return;
    }
    if (name.size() > LONGEST_HASHED) {
        m_longNames.emplace_back(name);
        return;
    }
    if (m_entries.size() < 2 * std::size_t{m_size}) {
        grow();
    }
    const std::uint64_t hash = hashOf(name);
    m_entries[placeOf(hash, name)] = {hash, static_cast<mrl::Uint32>(m_units.size()),
                                      static_cast<mrl::Uint32>(name.size()), m_round};
    m_units.append(name);
    m_lengths[kindOf(name.front())] |= std::uint64_t{1} << name.size();
}

bool ContainedNames::anyWithin(mrl::CharView text) const {
    if (m_hasEmptyName) {
        return true;
    }
    for (; !text.empty(); text.remove_prefix(1)) {
        // The parts that begin here, from the shortest on.
        std::uint64_t lengths = m_lengths[kindOf(text.front())];
        std::uint64_t hash = 0;
        for (std::size_t hashed = 0; lengths != 0; lengths &= lengths - 1) {
            const auto length = static_cast<std::size_t>(std::countr_zero(lengths));
            if (length > text.size()) {
                break;
            }
            for (; hashed < length; ++hashed) {
                hash = extended(hash, text[hashed]);
            }
            if (m_entries[placeOf(hash, text.substr(0, length))].round == m_round) {
                return true;
            }
        }
        if (std::any_of(m_longNames.begin(), m_longNames.end(),
                        [text](const mrl::CharString& name) { return text.starts_with(name); })) {
            return true;
        }
    }
    return false;
}

std::size_t ContainedNames::placeOf(std::uint64_t hash, mrl::CharView name) const {
    const std::size_t mask = m_entries.size() - 1;
    // The upper half of a product depends on every bit of the lower one.
    std::size_t place = ((hash * BASE) >> 32) & mask;
    while (m_entries[place].round == m_round &&
           (m_entries[place].hash != hash || nameOf(m_entries[place]) != name)) {
        place = (place + 1) & mask;
    }
    return place;
}

void ContainedNames::grow() {
    std::vector<Entry> old(m_entries.empty() ? FIRST_CAPACITY : 2 * m_entries.size());
    std::swap(old, m_entries);
    for (const Entry& entry : old) {
        if (entry.round == m_round) {
            m_entries[placeOf(entry.hash, nameOf(entry))] = entry;
        }
    }
}
