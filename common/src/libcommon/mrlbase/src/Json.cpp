#include <mrl/Json.h>

#include <algorithm>
#include <set>
#include <vector>

namespace mrl {

namespace {

// Refuses a member that an object has twice, which the parser would overwrite silently, and objects
// with too many members.
class MemberGuard {
public:
    bool operator()(int /*depth*/, Json::parse_event_t event, const Json& parsed) {
        switch (event) {
        case Json::parse_event_t::object_start:
            m_open.emplace_back();
            break;
        case Json::parse_event_t::object_end:
            m_open.pop_back();
            break;
        case Json::parse_event_t::key: {
            const auto& member = parsed.get_ref<const std::string&>();
            if (!m_open.back().insert(member).second) {
                throw JsonFailure(JsonFailure::Reason::memberTwice, member);
            }
            if (m_open.back().size() > JsonFailure::MOST_MEMBERS) {
                throw JsonFailure(JsonFailure::Reason::tooManyMembers, member);
            }
            break;
        }
        default:
            break;
        }
        return true;
    }

private:
    std::vector<std::set<std::string>> m_open; ///< the members so far of each open object
};

// The parser's message without its name, number and place:
// "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error while ...".
std::string detailOf(const Json::exception& failure) {
    std::string_view text = failure.what();
    for (const std::string_view end : {"] ", "column ", ": "}) {
        const std::size_t found = text.find(end);
        if (found == std::string_view::npos) {
            break;
        }
        text.remove_prefix(found + end.size());
    }
    return std::string(text);
}

// The parser counts the bytes up to and with the one that it refuses, which may be the end.
JsonFailure syntaxFailure(std::string_view text, const Json::parse_error& failure) {
    const std::size_t bytes = failure.byte == 0 ? 0 : failure.byte - 1;
    const std::string_view before = text.substr(0, std::min(bytes, text.size()));
    const auto lines = static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
    const std::size_t lineStart = before.rfind('\n') + 1; // 0 in the first line
    return {JsonFailure::Reason::syntax, detailOf(failure), lines + 1,
            before.size() - lineStart + 1};
}

std::string refusal(JsonFailure::Reason reason, const std::string& detail, std::size_t line,
                    std::size_t column) {
    switch (reason) {
    case JsonFailure::Reason::syntax:
        return "line " + std::to_string(line) + ", column " + std::to_string(column) + ": " +
               detail;
    case JsonFailure::Reason::memberTwice:
        return "the member \"" + detail + "\" is there twice in one object";
    case JsonFailure::Reason::tooManyMembers:
        return "one object has more than " + std::to_string(JsonFailure::MOST_MEMBERS) +
               " members, the first beyond being \"" + detail + "\"";
    case JsonFailure::Reason::number:
        break;
    }
    return detail;
}

} // namespace

JsonFailure::JsonFailure(Reason why, std::string about, std::size_t inLine, std::size_t inColumn)
    : std::runtime_error(refusal(why, about, inLine, inColumn)), reason(why),
      detail(std::move(about)), line(inLine), column(inColumn) {}

Json parseJson(std::string_view text) {
    try {
        MemberGuard guard;
        return Json::parse(text, std::ref(guard));
    } catch (const Json::parse_error& failure) {
        throw syntaxFailure(text, failure);
    } catch (const Json::exception& failure) {
        throw JsonFailure(JsonFailure::Reason::number, detailOf(failure));
    }
}

bool readJson(std::string_view text, JsonParts& parts) {
    return Json::sax_parse(text.data(), text.data() + text.size(), &parts);
}

} // namespace mrl
