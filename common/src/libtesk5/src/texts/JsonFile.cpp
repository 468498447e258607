#include "texts/JsonFile.h"

#include "texts/SystemReason.h"

#include <mrl/Files.h>

#include <set>
#include <vector>

namespace tesk5 {

namespace {

// "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error ..." without what
// only a programmer reads. The place is told in the user's language, the rest as the parser says
// it.
Message syntaxProblem(std::string text) {
    for (const std::string_view prefix : {"] ", "parse error at "}) {
        const std::size_t found = text.find(prefix);
        if (found != std::string::npos) {
            text.erase(0, found + prefix.size());
        }
    }
    constexpr std::string_view LINE = "line ";
    constexpr std::string_view COLUMN = ", column ";
    constexpr std::string_view PROBLEM = ": ";
    const std::size_t column = text.find(COLUMN);
    const std::size_t problem = column == std::string::npos ? column : text.find(PROBLEM, column);
    if (!text.starts_with(LINE) || problem == std::string::npos) {
        return Message::ofOthers(text);
    }
    const std::size_t columnText = column + COLUMN.size();
    return Message("INPUT_JSON_SYNTAX", {{"Line", text.substr(LINE.size(), column - LINE.size())},
                                         {"Column", text.substr(columnText, problem - columnText)},
                                         {"Problem", text.substr(problem + PROBLEM.size())}});
}

// Follows the parser and refuses a member that is there twice: which of the two was meant?
class DuplicateGuard {
public:
    bool operator()(int /*depth*/, Json::parse_event_t event, const Json& parsed) {
        switch (event) {
        case Json::parse_event_t::object_start:
            m_open.emplace_back();
            break;
        case Json::parse_event_t::object_end:
            m_open.pop_back();
            break;
        case Json::parse_event_t::key:
            if (!m_open.back().insert(parsed.get<std::string>()).second) {
                throw memberTwice(parsed.get<std::string>());
            }
            break;
        default:
            break;
        }
        return true;
    }

private:
    std::vector<std::set<std::string>> m_open;
};

// Texts of one language are some twenty kilobytes, a device two hundred bytes.
constexpr std::size_t LARGEST_FILE = 0x100000;

} // namespace

bool isFile(const std::filesystem::path& path) {
    return mrl::fileKind(path) == mrl::FileKind::ordinary;
}

Json parseJson(const std::string& text) {
    try {
        DuplicateGuard guard;
        return Json::parse(text, std::ref(guard));
    } catch (const Json::exception& failure) {
        throw JsonFailure(syntaxProblem(failure.what()));
    }
}

bool JsonReceiver::parse_error(std::size_t /*position*/, const std::string& /*token*/,
                               const nlohmann::detail::exception& failure) {
    throw JsonFailure(syntaxProblem(failure.what()));
}

void parseJson(const std::string& text, JsonReceiver& receiver) {
    Json::sax_parse(text, &receiver);
}

JsonFailure memberTwice(const std::string& member) {
    return JsonFailure(Message("INPUT_JSON_MEMBER_TWICE", {{"Member", member}}));
}

std::string readJsonText(const std::filesystem::path& path) {
    try {
        return mrl::readWholeFile(path, LARGEST_FILE);
    } catch (const mrl::FileFailure& failure) {
        throw JsonFailure(fileReason(failure));
    }
}

Json readJsonFile(const std::filesystem::path& path) {
    return parseJson(readJsonText(path));
}

} // namespace tesk5
