// JSON files of strangers: read whole, refused with the place and the reason.
#pragma once

#include "Message.h"

#include <nlohmann/json.hpp>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace tesk5 {

using Json = nlohmann::ordered_json;

/// Why a file or text is not usable, with the place in it where there is one.
class JsonFailure : public std::runtime_error {
public:
    explicit JsonFailure(Message message)
        : std::runtime_error(message.inEnglish()), m_message(std::move(message)) {}

    /// For people, in the language in force; what() is for the log.
    std::string reason() const { return m_message.text(); }

private:
    Message m_message;
};

/// Whether `path` names an ordinary file that is there, readable or not.
bool isFile(const std::filesystem::path& path);

/// The value that `text` spells in JSON; members keep their order.
/// Failure: throws JsonFailure for ill-formed JSON and for an object that names a member twice
Json parseJson(const std::string& text);

/// The value that the file spells.
/// Failure: throws JsonFailure as parseJson() does, and when the file cannot be read, is no
/// ordinary one or has more than 1 MiB
Json readJsonFile(const std::filesystem::path& path);

} // namespace tesk5
