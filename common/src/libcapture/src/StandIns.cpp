// Each byte of each name is a place. Places that a common name links share one value, which is
// drawn anew unless a stand-in with it was given before. What the draw makes alike by chance is
// drawn again.
#include "StandIns.h"

#include <mrl/Unicode.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <set>

namespace capture {

namespace {

using Byte = unsigned char;

constexpr int MOST_DRAWS = 20000;
constexpr std::size_t SHORT = 2;   // names so short that a chance likeness is likely
constexpr std::size_t TELLING = 3; // bytes of a name that must not be left together
constexpr Byte CASE = 0x20;

// Consonants: hardly a part of a name is like a part of a stand-in by chance.
constexpr std::string_view LETTERS = "bcdfghjklmnprst";
constexpr std::string_view RARE_LETTERS = "qvwxz";

bool isContinuation(Byte byte) {
    return byte >= 0x80 && byte < 0xC0;
}

// As Latin-1 letters, which single bytes are to the program.
bool isUpper(Byte byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 0xC0 && byte <= 0xDE && byte != 0xD7);
}

Byte folded(Byte byte) {
    return isUpper(byte) ? static_cast<Byte>(byte | CASE) : byte;
}

std::string folded(const std::string& name) {
    std::string all;
    for (const char c : name) {
        all += static_cast<char>(folded(static_cast<Byte>(c)));
    }
    return all;
}

bool isUtf8(const std::string& name) {
    return mrl::toUtf8(mrl::toUtf16(name)) == name;
}

// The text of a name as the program reads it: each byte one character.
mrl::CharString readByBytes(const std::string& name) {
    mrl::CharString text;
    for (const char c : name) {
        text += static_cast<mrl::Char>(static_cast<Byte>(c));
    }
    return text;
}

mrl::CharString trimmed(const mrl::CharString& text) {
    const auto isBlank = [](mrl::Char c) { return c == ' ' || (c >= 9 && c <= 13); };
    const auto begin = std::find_if_not(text.begin(), text.end(), isBlank);
    const auto end = std::find_if_not(text.rbegin(), text.rend(), isBlank).base();
    return begin < end ? mrl::CharString(begin, end) : mrl::CharString();
}

std::set<std::string> tellingParts(const std::string& foldedName) {
    std::set<std::string> parts;
    for (std::size_t i = 0; i + TELLING <= foldedName.size(); ++i) {
        parts.insert(foldedName.substr(i, TELLING));
    }
    return parts;
}

// What may take a byte's place.
enum class Kind {
    KEPT,         // blanks, controls, and what makes the bytes around it UTF-8
    LETTER,       // of ASCII, where all printable characters become letters
    RARE_LETTER,  // the same in a short name
    CONTINUATION, // of UTF-8
    LATIN         // a letter in one byte
};

std::vector<Kind> kindsOf(const std::string& name) {
    std::vector<Kind> kinds;
    const bool utf8 = isUtf8(name);
    Byte before = 0;
    for (const char c : name) {
        const auto byte = static_cast<Byte>(c);
        // After these, UTF-8 allows a part of the continuations only.
        const bool tied = before == 0xE0 || before == 0xED || before == 0xF0 || before == 0xF4;
        if (byte <= ' ' || byte == 0x7F || (utf8 && (byte >= 0xC0 || tied))) {
            kinds.push_back(Kind::KEPT);
        } else if (byte < 0x80) {
            kinds.push_back(name.size() <= SHORT ? Kind::RARE_LETTER : Kind::LETTER);
        } else {
            kinds.push_back(isContinuation(byte) ? Kind::CONTINUATION : Kind::LATIN);
        }
        before = byte;
    }
    return kinds;
}

} // namespace

// The values of all places, for the names and links that there are.
class StandIns::Solution {
public:
    Solution(const std::vector<Name>& names, const std::vector<Link>& links, std::size_t first,
             std::random_device& random)
        : m_names(names), m_random(random()) {
        std::size_t places = 0;
        for (const Name& name : names) {
            m_begin.push_back(places);
            places += name.original.size();
        }
        m_root.resize(places);
        std::iota(m_root.begin(), m_root.end(), std::size_t{0});
        for (const Link& link : links) {
            for (std::size_t i = 0; i < names[link.inner].original.size(); ++i) {
                m_root[rootOf(m_begin[link.outer] + link.offset + i)] =
                    rootOf(m_begin[link.inner] + i);
            }
        }
        for (std::size_t i = 0; i < places; ++i) {
            m_root[i] = rootOf(i);
        }
        setKinds();
        setValues(first);
    }

    std::string standIn(std::size_t name) const {
        std::string text = m_names[name].original;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const std::size_t root = m_root[m_begin[name] + i];
            const auto original = static_cast<Byte>(text[i]);
            if (m_kinds.at(root) == Kind::KEPT) {
                continue;
            }
            const Byte value = m_values.at(root);
            text[i] = static_cast<char>(isUpper(original) ? value & ~CASE : value);
        }
        return text;
    }

    /// Draws again the place that makes `name`, from `offset` on, like what it must not be.
    /// \return whether there is one that may change
    bool drawAgain(std::size_t name, std::size_t offset, std::size_t length) {
        std::vector<std::size_t> free;
        for (std::size_t i = offset; i < offset + length; ++i) {
            const std::size_t root = m_root[m_begin[name] + i];
            if (m_drawn.contains(root)) {
                free.push_back(root);
            }
        }
        if (free.empty()) {
            return false;
        }
        const std::size_t root = free[pick(free.size())];
        m_values[root] = draw(m_kinds[root]);
        return true;
    }

private:
    std::size_t rootOf(std::size_t place) const {
        while (m_root[place] != place) {
            place = m_root[place];
        }
        return place;
    }

    std::size_t pick(std::size_t count) {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random);
    }

    Byte draw(Kind kind) {
        switch (kind) {
        case Kind::LETTER:
            return static_cast<Byte>(LETTERS[pick(LETTERS.size())]);
        case Kind::RARE_LETTER:
            return static_cast<Byte>(RARE_LETTERS[pick(RARE_LETTERS.size())]);
        case Kind::CONTINUATION:
            return static_cast<Byte>(0x80 + pick(0x40));
        default:
            return static_cast<Byte>(0xE0 + pick(0x17)); // up to 0xF6, all letters
        }
    }

    // A short name makes all that is linked with it rare; what is kept in one name is kept in all.
    void setKinds() {
        for (std::size_t i = 0; i < m_names.size(); ++i) {
            const std::vector<Kind> kinds = kindsOf(m_names[i].original);
            for (std::size_t k = 0; k < kinds.size(); ++k) {
                const auto [entry, added] = m_kinds.emplace(m_root[m_begin[i] + k], kinds[k]);
                if (!added && (kinds[k] == Kind::KEPT ||
                               (kinds[k] == Kind::RARE_LETTER && entry->second == Kind::LETTER))) {
                    entry->second = kinds[k];
                }
            }
        }
    }

    // The values that were given before, those of the first names before all others; the rest
    // drawn.
    void setValues(std::size_t first) {
        std::set<std::size_t> disputed;
        for (std::size_t i = 0; i < m_names.size(); ++i) {
            for (std::size_t k = 0; k < m_names[i].standIn.size(); ++k) {
                const std::size_t root = m_root[m_begin[i] + k];
                const Byte value = folded(static_cast<Byte>(m_names[i].standIn[k]));
                const auto [entry, added] = m_values.emplace(root, value);
                if (added && i < first) {
                    m_firm.insert(root);
                } else if (entry->second != value && !m_firm.contains(root)) {
                    disputed.insert(root);
                }
            }
        }
        for (const auto& [root, kind] : m_kinds) {
            if (kind != Kind::KEPT && (disputed.contains(root) || !m_values.contains(root))) {
                m_values[root] = draw(kind);
                m_drawn.insert(root);
            }
        }
    }

    const std::vector<Name>& m_names;
    std::mt19937 m_random;
    std::vector<std::size_t> m_begin; ///< place of each name's first byte
    std::vector<std::size_t> m_root;  ///< by place: the place that stands for all linked with it
    std::map<std::size_t, Kind> m_kinds;
    std::map<std::size_t, Byte> m_values;
    std::set<std::size_t> m_firm;
    std::set<std::size_t> m_drawn;
};

const StandIns::Name* StandIns::find(const std::string& original) const {
    const auto found = std::find_if(m_names.begin(), m_names.end(), [&original](const Name& name) {
        return name.original == original;
    });
    return found == m_names.end() ? nullptr : &*found;
}

void StandIns::link(std::size_t one, std::size_t other) {
    const std::string outer = folded(m_names[one].original);
    const std::string inner = folded(m_names[other].original);
    for (std::size_t at = outer.find(inner); at != std::string::npos;
         at = outer.find(inner, at + 1)) {
        m_links.push_back({one, at, other});
    }
}

// A name in another encoding than UTF-8, or one that was given as its bytes look, matches the given
// name by its characters, not by its bytes.
bool StandIns::borrow(Name& name) const {
    const mrl::CharString read = trimmed(readByBytes(name.original));
    for (std::size_t i = 0; i < m_first; ++i) {
        const mrl::CharString given = mrl::toUtf16(m_names[i].original);
        const mrl::CharString lent = mrl::toUtf16(m_names[i].standIn);
        const bool fits =
            std::all_of(lent.begin(), lent.end(), [](mrl::Char c) { return c <= 0xFF; });
        if (m_names[i].original == name.original || !fits || lent.size() != given.size() ||
            !mrl::equalNoCase(trimmed(given), read)) {
            continue;
        }
        name.standIn.clear();
        for (const mrl::Char c : trimmed(lent)) {
            name.standIn += static_cast<char>(c);
        }
        const std::size_t begin = readByBytes(name.original).find(read);
        name.standIn = name.original.substr(0, begin) + name.standIn +
                       name.original.substr(begin + read.size());
        return true;
    }
    return false;
}

void StandIns::learn(const std::vector<std::string>& names) {
    const std::size_t known = m_names.size();
    for (const std::string& name : names) {
        if (!name.empty() && find(name) == nullptr) {
            m_names.push_back({name, {}});
        }
    }
    if (m_names.size() == known) {
        return;
    }
    for (std::size_t i = known; i < m_names.size(); ++i) {
        for (std::size_t k = 0; k < i; ++k) {
            link(i, k);
            link(k, i);
        }
    }
    std::set<std::string> telling;
    std::vector<std::string> originals;
    for (const Name& name : m_names) {
        originals.push_back(folded(name.original));
        telling.merge(tellingParts(originals.back()));
    }
    Solution solution(m_names, m_links, m_first, m_random);
    // Draws again until nothing is alike by chance, or it cannot be helped.
    int draws = 0;
    for (bool again = true; again && draws < MOST_DRAWS;) {
        again = false;
        std::vector<std::string> standIns;
        for (std::size_t i = 0; i < m_names.size(); ++i) {
            standIns.push_back(folded(solution.standIn(i)));
        }
        for (std::size_t i = 0; i < standIns.size(); ++i) {
            for (std::size_t at = 0; at + TELLING <= standIns[i].size(); ++at) {
                if (telling.contains(standIns[i].substr(at, TELLING))) {
                    ++draws;
                    again = solution.drawAgain(i, at, TELLING) || again;
                }
            }
            for (std::size_t k = 0; k < standIns.size(); ++k) {
                const std::size_t at = k == i ? std::string::npos : standIns[i].find(standIns[k]);
                if (at != std::string::npos &&
                    originals[i].find(originals[k]) == std::string::npos) {
                    ++draws;
                    again = solution.drawAgain(i, at, standIns[k].size()) ||
                            solution.drawAgain(k, 0, standIns[k].size()) || again;
                }
            }
        }
    }
    for (std::size_t i = 0; i < m_names.size(); ++i) {
        m_names[i].standIn = solution.standIn(i);
    }
    if (known == 0) {
        m_first = m_names.size();
    }
    for (Name& name : m_names) {
        const bool ascii = std::all_of(name.original.begin(), name.original.end(),
                                       [](char c) { return static_cast<Byte>(c) < 0x80; });
        if (!ascii) {
            borrow(name);
        }
    }
}

std::string StandIns::of(const std::string& name) const {
    const Name* known = find(name);
    return known == nullptr ? name : known->standIn;
}

} // namespace capture
