// Stand-ins for names: random texts of the same length that are related as the names are.
//
// The program compares names in these ways: a name within another one, and equality in any letter
// case without the blanks at the ends. So what stays as it is: which name occurs where in which
// other one, the case of letters, blanks and control characters, and in UTF-8 the script.
#pragma once

#include <random>
#include <string>
#include <vector>

namespace capture {

/// One thread at a time.
class StandIns {
public:
    /// Makes stand-ins for those of `names` (bytes, perhaps UTF-8) that have none yet, together:
    /// only so can all relations be kept. A stand-in that was given before changes when a later
    /// name forces that; those of the names learnt first never do.
    void learn(const std::vector<std::string>& names);

    /// That of a name that was learnt.
    std::string of(const std::string& name) const;

private:
    struct Name {
        std::string original;
        std::string standIn; ///< empty until it is made
    };
    // The name `inner` occurs in `outer` at `offset`, in any letter case.
    struct Link {
        std::size_t outer;
        std::size_t offset;
        std::size_t inner;
    };
    class Solution;

    const Name* find(const std::string& original) const;
    void link(std::size_t one, std::size_t other);
    bool borrow(Name& name) const;

    std::vector<Name> m_names;
    std::vector<Link> m_links;
    std::size_t m_first = 0; ///< how many names the first call gave
    std::random_device m_random;
};

} // namespace capture
