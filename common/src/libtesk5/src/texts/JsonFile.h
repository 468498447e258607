// JSON files that people write. A refusal is a message for people and for the log.
#pragma once

#include "texts/Message.h"

#include <mrl/Json.h>

#include <filesystem>
#include <stdexcept>
#include <string_view>

namespace tesk5 {

/// Why a file or a text cannot be used. what() is in English, for the log.
class UnusableInput : public std::runtime_error {
public:
    explicit UnusableInput(Message message)
        : std::runtime_error(message.inEnglish()), m_message(std::move(message)) {}

    /// In the language in force.
    std::string reason() const { return m_message.text(); }

private:
    Message m_message;
};

/// mrl::parseJson().
/// Failure: throws UnusableInput
mrl::Json parseJson(std::string_view text);

/// mrl::readJsonFile() for a file of at most 1 MiB.
/// Failure: throws UnusableInput
mrl::Json readJsonFile(const std::filesystem::path& path);

} // namespace tesk5
