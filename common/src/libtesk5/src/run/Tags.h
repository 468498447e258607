// What a run is to be known by: the tags that it is given, asks for and needs.
#pragma once

#include <tesk5/RunContext.h>

#include <optional>
#include <regex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// A tag whose meaning is the same wherever reports are read.
struct KnownTag {
    const char* name;
    const char* meaning; ///< key of a text
    const char* example; ///< a value
};
std::span<const KnownTag> knownTags();

/// Why a tag cannot have the name, for people; nothing when it can: 1 to 64 ASCII letters, digits,
/// hyphens, underscores and dots.
std::optional<std::string> whyNoTagName(std::string_view name);

/// Why a tag cannot have its value, for people; nothing when it can: 1 to 200 characters, none of
/// them a control character.
std::optional<std::string> whyNoTagValue(const Tag& tag);

/// `value` without what a scanner sends behind a code: line ends and tabs.
std::string withoutLineEnd(std::string value);

/// A regular expression (ECMAScript's) that the whole value of a tag has to match.
///
/// Patterns come from files, so their length and their size with every repetition written out are
/// bounded, and the time to match grows with the length of the value, not exponentially.
class TagPattern {
public:
    /// Failure: throws BadInput for a text that is no regular expression, and for one too large
    TagPattern(std::string name, std::string pattern);

    const std::string& name() const { return m_name; }
    const std::string& pattern() const { return m_pattern; }
    bool matches(const std::string& value) const;

private:
    std::string m_name;
    std::string m_pattern;
    std::regex m_regex;
};

/// What the command line and the configuration say of tags.
struct TagRequest {
    std::vector<Tag> given;            ///< no name twice
    std::vector<std::string> prompted; ///< the tags that a person is asked for
    std::vector<std::string> required;
    std::vector<TagPattern> patterns;

    const Tag* find(std::string_view name) const;
    bool isPrompted(std::string_view name) const;
};

/// Checks the tags that are given against their patterns, and that the required ones are given or
/// will be asked for.
/// Failure: throws BadInput
void checkTags(const TagRequest& request);

/// The tags of a run: those given, then the answers to the questions. The questions go to standard
/// error; an answer that cannot be used is asked for again, twice at most. Waits for a person.
/// Failure: throws BadInput
std::vector<Tag> askForTags(const TagRequest& request, RunContext& context);

} // namespace tesk5
