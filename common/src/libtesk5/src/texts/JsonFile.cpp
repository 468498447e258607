#include "texts/JsonFile.h"

#include "texts/SystemReason.h"

#include <mrl/Files.h>

namespace tesk5 {

namespace {

// Texts of one language are some twenty kilobytes, a device two hundred bytes.
constexpr std::size_t LARGEST_FILE = 0x100000;

Message messageOf(const mrl::JsonFailure& failure) {
    switch (failure.reason) {
    case mrl::JsonFailure::Reason::syntax:
        return Message("INPUT_JSON_SYNTAX", {{"Line", std::to_string(failure.line)},
                                             {"Column", std::to_string(failure.column)},
                                             {"Problem", failure.detail}});
    case mrl::JsonFailure::Reason::memberTwice:
        return Message("INPUT_JSON_MEMBER_TWICE", {{"Member", failure.detail}});
    case mrl::JsonFailure::Reason::tooManyMembers:
        return Message("INPUT_JSON_TOO_MANY_MEMBERS",
                       {{"Member", failure.detail},
                        {"Limit", std::to_string(mrl::JsonFailure::MOST_MEMBERS)}});
    case mrl::JsonFailure::Reason::number:
        break;
    }
    return Message::ofOthers(failure.detail);
}

} // namespace

mrl::Json parseJson(std::string_view text) {
    try {
        return mrl::parseJson(text);
    } catch (const mrl::JsonFailure& failure) {
        throw UnusableInput(messageOf(failure));
    }
}

mrl::Json readJsonFile(const std::filesystem::path& path) {
    try {
        return parseJson(mrl::readWholeFile(path, LARGEST_FILE));
    } catch (const mrl::FileFailure& failure) {
        throw UnusableInput(fileReason(failure));
    }
}

} // namespace tesk5
