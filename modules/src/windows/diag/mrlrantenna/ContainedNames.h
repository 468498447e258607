// Answers for a list of names whether one of them is a part of another name, in a time that does
// not grow with the list: a trade fair has thousands, and each new one is compared with all.
#pragma once

#include <mrl/Types.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

/// A set of names, by their hashes. Not synchronised: one thread at a time.
class ContainedNames {
public:
    /// Forgets every name. The memory is kept for the next ones.
    void clear();
    /// Takes one more name; it may be known already.
    void add(mrl::CharView name);
    /// How many times add() was called since the last clear().
    mrl::Uint32 size() const { return m_size; }

    /// Whether a name of the set occurs in `text`, unit by unit; the empty name occurs everywhere.
    /// Looks up each part of `text` that could be a name: one that begins as a name of that length
    /// does. Names beyond LONGEST_HASHED units are compared one by one.
    bool anyWithin(mrl::CharView text) const;

    /// An SSID has 32.
    static constexpr std::size_t LONGEST_HASHED = 63;

private:
    // The names lie one behind the other in m_units. An entry of an earlier round counts as free.
    struct Entry {
        std::uint64_t hash = 0;
        mrl::Uint32 begin = 0;
        mrl::Uint32 length = 0;
        mrl::Uint32 round = 0;
    };
    // For each kind of first unit the lengths, as bits, of the names that begin with it.
    static constexpr std::size_t FIRST_UNIT_KINDS = 64;
    static std::size_t kindOf(mrl::Char unit) { return unit % FIRST_UNIT_KINDS; }

    mrl::CharView nameOf(const Entry& entry) const {
        return mrl::CharView(m_units).substr(entry.begin, entry.length);
    }
    // The entry's place, or the free one where it would be put. The table must have a free place.
    std::size_t placeOf(std::uint64_t hash, mrl::CharView name) const;
    void grow();

    std::vector<Entry> m_entries; // none, or a power of two of which half is free at least
    mrl::CharString m_units;
    std::array<std::uint64_t, FIRST_UNIT_KINDS> m_lengths{};
    std::vector<mrl::CharString> m_longNames;
    mrl::Uint32 m_size = 0;
    mrl::Uint32 m_round = 1;
    bool m_hasEmptyName = false;
};
