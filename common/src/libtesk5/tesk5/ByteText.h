// Names that are bytes: networks send theirs so, and each byte is read as the character of the same
// value. Most senders mean UTF-8, which people see beside that reading.
#pragma once

#include <tesk5/TeskString.h>

#include <optional>
#include <string>

namespace tesk5 {

/// What a value in hexadecimal digits begins with, in any letter case.
inline constexpr const char* HEX_PREFIX = "hex:";

/// Whether `text` begins with HEX_PREFIX.
bool isHexForm(const TeskString& text);

/// Why a text in hexadecimal form cannot be used: the key of the reason's text; null when it can.
/// \param most how many bytes there may be
const char* problemOfHexForm(const TeskString& text, std::size_t most);

/// The characters U+0001 to U+00FF of the bytes in `text`, for which problemOfHexForm() must be
/// null.
TeskString fromHexForm(const TeskString& text);

/// The hexadecimal form of `text`: "hex:42C3BC726F". A text with characters above U+00FF, which
/// stand for no byte, is returned as it is.
std::string toHexForm(const TeskString& text);

/// For people: `text`, and behind it in brackets its bytes read as UTF-8, where they are such and
/// the readings differ.
std::string withUtf8Reading(const std::string& text);

} // namespace tesk5
