#include "JsonFile.h"

#include <cerrno>
#include <fstream>
#include <iterator>
#include <set>
#include <system_error>
#include <vector>

namespace tesk5 {

namespace {

// "[json.exception.parse_error.101] parse error at line 1, column 2: syntax error ..." without what
// only a programmer reads.
std::string withoutPrefix(std::string text) {
    for (const std::string_view prefix : {"] ", "parse error at "}) {
        const std::size_t found = text.find(prefix);
        if (found != std::string::npos) {
            text.erase(0, found + prefix.size());
        }
    }
    return text;
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
                throw JsonFailure("the member \"" + parsed.get<std::string>() +
                                  "\" is there twice in one object");
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

std::string reasonOf(int error) {
    return error == 0 ? "it cannot be read" : std::generic_category().message(error);
}

} // namespace

bool isFile(const std::filesystem::path& path) {
    std::error_code failure;
    return std::filesystem::exists(path, failure) && !std::filesystem::is_directory(path, failure);
}

Json parseJson(const std::string& text) {
    try {
        DuplicateGuard guard;
        return Json::parse(text, std::ref(guard));
    } catch (const Json::exception& failure) {
        throw JsonFailure(withoutPrefix(failure.what()));
    }
}

Json readJsonFile(const std::filesystem::path& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        throw JsonFailure("it is a directory");
    }
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw JsonFailure(reasonOf(errno));
    }
    const std::string text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    if (file.bad()) {
        throw JsonFailure(reasonOf(errno));
    }
    return parseJson(text);
}

} // namespace tesk5
