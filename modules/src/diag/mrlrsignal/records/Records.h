// Records for programs: one line each, as CSV (RFC 4180) or as JSON.
#pragma once

#include <mrl/Json.h>
#include <mrl/OutputStream.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace records {

enum class Format : std::uint8_t {
    CSV,   ///< a line with the names of the fields, then a line a record, each ended by CR LF
    JSONL, ///< a JSON object a line, in ASCII
};

/// What --format calls it; nothing for another word.
std::optional<Format> formatNamed(std::string_view word);

/// Adds what a network is called: "name", which is null when the bytes of the name are no UTF-8,
/// and "nameHex", its bytes.
void addName(mrl::Json& record, std::string_view bytes);

/// Writes records to a stream, each in one piece and at once.
class Writer {
public:
    Writer(mrl::OutputStream& stream, Format format) : m_stream(stream), m_format(format) {}

    /// Writes a record: an object of which no member is an object. All records of a writer have the
    /// same members in the same order. In CSV null is an empty field, and the items of a list have
    /// semicolons between them. A terminal gets names with what could move its
    /// cursor escaped; files and pipes get them as they are.
    /// \return false when a part of what was written so far is lost
    bool write(const mrl::Json& record);

private:
    mrl::OutputStream& m_stream;
    Format m_format;
    bool m_begun = false;
};

} // namespace records
