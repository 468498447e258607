// JSON files of strangers: read whole, refused with the place and the reason.
#pragma once

#include "texts/Message.h"

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

/// Hears what a text spells, piece by piece, where no value of the whole is wanted.
class JsonReceiver : public nlohmann::json_sax<Json> {
public:
    bool null() final { return plain(); }
    bool boolean(bool) final { return plain(); }
    bool number_integer(number_integer_t) final { return plain(); }
    bool number_unsigned(number_unsigned_t) final { return plain(); }
    bool number_float(number_float_t, const string_t&) final { return plain(); }
    bool binary(binary_t&) final { return plain(); }
    /// Throws JsonFailure.
    bool parse_error(std::size_t position, const std::string& token,
                     const nlohmann::detail::exception& failure) final;

protected:
    /// A value that is neither a text nor made of others.
    virtual void plainValue() = 0;

private:
    bool plain() {
        plainValue();
        return true;
    }
};

/// Tells `receiver` what `text` spells. What the receiver throws comes out.
/// Failure: throws JsonFailure for ill-formed JSON; a member named twice is the receiver's affair
void parseJson(const std::string& text, JsonReceiver& receiver);

/// The refusal of an object that names `member` twice.
JsonFailure memberTwice(const std::string& member);

/// The bytes of a file that is said to be JSON.
/// Failure: throws JsonFailure when the file cannot be read, is no ordinary one or has more than
/// 1 MiB
std::string readJsonText(const std::filesystem::path& path);

/// The value that the file spells.
/// Failure: throws JsonFailure as parseJson() and readJsonText() do
Json readJsonFile(const std::filesystem::path& path);

} // namespace tesk5
