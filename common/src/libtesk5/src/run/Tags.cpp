#include "run/Tags.h"

#include <tesk5/BadInput.h>
#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

#include "model/Decimal.h"

#include <mrl/Unicode.h>

#include <algorithm>

namespace tesk5 {

namespace {

constexpr std::size_t LONGEST_NAME = 64;
constexpr std::size_t LONGEST_VALUE = 200;
constexpr std::size_t MOST_TAGS = 100;

constexpr KnownTag knownNames[] = {
    {"serial", "TAG_SERIAL", "A1234"},  {"part", "TAG_PART", "4711"},
    {"revision", "TAG_REVISION", "C"},  {"station", "TAG_STATION", "L3-07"},
    {"fixture", "TAG_FIXTURE", "F2"},   {"operator", "TAG_OPERATOR", "17"},
    {"batch", "TAG_BATCH", "2026-W47"}, {"sequence", "TAG_SEQUENCE", "1"},
};

std::size_t charactersIn(std::string_view utf8) {
    constexpr unsigned CONTINUATION = 0x80;
    constexpr unsigned CONTINUATION_BITS = 0xC0;
    return static_cast<std::size_t>(std::count_if(utf8.begin(), utf8.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & CONTINUATION_BITS) != CONTINUATION;
    }));
}

bool isNameLetter(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '-' || letter == '_' || letter == '.';
}

// How many characters and groups `pattern` has with every counted repetition written out. The
// library recurses once for each of them when all may be empty.
class WrittenOut {
public:
    explicit WrittenOut(std::string_view pattern) {
        for (std::size_t i = 0; i < pattern.size(); ++i) {
            switch (pattern[i]) {
            case '\\':
                ++i;
                add(1);
                break;
            case '[':
                i = endOfClass(pattern, i);
                add(1);
                break;
            case '(':
                m_outer.push_back(m_size);
                m_size = 0;
                break;
            case ')':
                close();
                break;
            case '{':
                i = repeat(pattern, i);
                break;
            default:
                add(1);
            }
        }
        while (!m_outer.empty()) {
            close();
        }
    }

    std::size_t size() const { return m_size; }

private:
    static std::size_t endOfClass(std::string_view pattern, std::size_t at) {
        while (++at < pattern.size() && pattern[at] != ']') {
            at += pattern[at] == '\\' ? 1 : 0;
        }
        return at;
    }
    void add(std::size_t size) {
        m_last = size;
        m_size = std::min(m_size + size, TOO_LARGE);
    }
    void close() {
        const std::size_t group = m_size + 1;
        m_size = m_outer.empty() ? 0 : m_outer.back();
        if (!m_outer.empty()) {
            m_outer.pop_back();
        }
        add(group);
    }
    std::size_t repeat(std::string_view pattern, std::size_t at) {
        const std::size_t end = std::min(pattern.find('}', at), pattern.size());
        const std::string_view counts = pattern.substr(at + 1, end - at - 1);
        const std::size_t comma = std::min(counts.find(','), counts.size());
        std::size_t most = 1;
        for (const std::string_view count :
             {counts.substr(0, comma), counts.substr(std::min(comma + 1, counts.size()))}) {
            if (!count.empty()) {
                most = std::max<std::size_t>(most, parseUint32(count).value_or(TOO_LARGE));
            }
        }
        add(m_last * (std::min(most, TOO_LARGE) - 1));
        return end;
    }

    static constexpr std::size_t TOO_LARGE = 1000000;
    std::vector<std::size_t> m_outer; ///< sizes in front of the open groups
    std::size_t m_size = 0;
    std::size_t m_last = 0; ///< what a repetition would repeat
};

std::regex regexOf(const std::string& name, const std::string& pattern) {
    constexpr std::size_t LONGEST_PATTERN = 200;
    constexpr std::size_t LARGEST_WRITTEN_OUT = 1000;
    if (pattern.size() > LONGEST_PATTERN || WrittenOut(pattern).size() > LARGEST_WRITTEN_OUT) {
        throw BadInput{message("INPUT_TAG_PATTERN_LARGE", {{"Name", name}})};
    }
    try {
        return std::regex(pattern, std::regex::ECMAScript | std::regex_constants::__polynomial);
    } catch (const std::regex_error&) {
        throw BadInput{message("INPUT_TAG_PATTERN", {{"Name", name}, {"Pattern", pattern}})};
    }
}

// Why the tag cannot be used, for people; nothing when it can.
std::optional<std::string> whyUnusable(const Tag& tag, const TagRequest& request) {
    if (std::optional<std::string> reason = whyNoTagValue(tag)) {
        return reason;
    }
    for (const TagPattern& pattern : request.patterns) {
        if (pattern.name() == tag.name && !pattern.matches(tag.value)) {
            return message(
                "INPUT_TAG_REFUSED",
                {{"Name", tag.name}, {"Value", tag.value}, {"Pattern", pattern.pattern()}});
        }
    }
    return std::nullopt;
}

Tag askedFor(const std::string& name, const TagRequest& request, RunContext& context) {
    constexpr int ATTEMPTS = 3;
    for (int attempt = 1;; ++attempt) {
        context.errors << message("TAG_QUESTION", {{"Name", name}}) + " ";
        context.errors.flush();
        const std::optional<std::string> line =
            context.input->line([&context] { return context.stopRequest.raised(); });
        if (!line) {
            throw BadInput{message("INPUT_TAG_UNANSWERED", {{"Name", name}})};
        }
        Tag tag{.name = name, .value = withoutLineEnd(*line)};
        const std::optional<std::string> reason = whyUnusable(tag, request);
        if (!reason) {
            return tag;
        }
        if (attempt == ATTEMPTS) {
            throw BadInput{*reason};
        }
        writeLine(context.errors, *reason);
    }
}

} // namespace

std::span<const KnownTag> knownTags() {
    return knownNames;
}

std::optional<std::string> whyNoTagName(std::string_view name) {
    if (!name.empty() && name.size() <= LONGEST_NAME &&
        std::all_of(name.begin(), name.end(), &isNameLetter)) {
        return std::nullopt;
    }
    return message("INPUT_TAG_NAME", {{"Name", std::string(name.substr(0, LONGEST_NAME))}});
}

std::optional<std::string> whyNoTagValue(const Tag& tag) {
    if (tag.value.find_first_not_of(' ') == std::string::npos) {
        return message("INPUT_TAG_EMPTY", {{"Name", tag.name}});
    }
    const std::size_t characters = charactersIn(tag.value);
    if (characters > LONGEST_VALUE) {
        return message("INPUT_TAG_LONG", {{"Name", tag.name},
                                          {"Count", std::to_string(characters)},
                                          {"Most", std::to_string(LONGEST_VALUE)}});
    }
    // Ill-formed UTF-8 is replaced, so that it differs as well.
    if (mrl::escapeControls(tag.value) != tag.value) {
        return message("INPUT_TAG_CONTROL", {{"Name", tag.name}, {"Value", tag.value}});
    }
    return std::nullopt;
}

std::string withoutLineEnd(std::string value) {
    value.erase(value.find_last_not_of("\r\n\t") + 1);
    return value;
}

TagPattern::TagPattern(std::string name, std::string pattern)
    : m_name(std::move(name)), m_pattern(std::move(pattern)), m_regex(regexOf(m_name, m_pattern)) {}

bool TagPattern::matches(const std::string& value) const {
    return std::regex_match(value, m_regex);
}

const Tag* TagRequest::find(std::string_view name) const {
    const auto found = std::find_if(given.begin(), given.end(),
                                    [name](const Tag& tag) { return tag.name == name; });
    return found == given.end() ? nullptr : &*found;
}

bool TagRequest::isPrompted(std::string_view name) const {
    return std::find(prompted.begin(), prompted.end(), name) != prompted.end();
}

void checkTags(const TagRequest& request) {
    for (const Tag& tag : request.given) {
        if (const std::optional<std::string> reason = whyUnusable(tag, request)) {
            throw BadInput{*reason};
        }
    }
    for (const std::string& name : request.required) {
        if (request.find(name) == nullptr && !request.isPrompted(name)) {
            throw BadInput{message("INPUT_TAG_MISSING", {{"Name", name}})};
        }
    }
    if (request.given.size() + request.prompted.size() > MOST_TAGS) {
        throw BadInput{message("INPUT_TAG_MANY", {{"Most", std::to_string(MOST_TAGS)}})};
    }
}

std::vector<Tag> askForTags(const TagRequest& request, RunContext& context) {
    std::vector<Tag> tags;
    for (const Tag& tag : request.given) {
        if (!request.isPrompted(tag.name)) {
            tags.push_back(tag);
        }
    }
    for (const std::string& name : request.prompted) {
        tags.push_back(askedFor(name, request, context));
    }
    return tags;
}

} // namespace tesk5
