#include <records/Records.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <string>

namespace records {

namespace {

using mrl::Json;

struct FormatWord {
    std::string_view word;
    Format format;
};
constexpr FormatWord formatWords[] = {{"csv", Format::CSV}, {"jsonl", Format::JSONL}};

// Numbers and words stand as they are.
std::string plainText(const Json& value) {
    if (value.is_null()) {
        return {};
    }
    return value.is_string() ? value.get<std::string>() : value.dump();
}

std::string csvField(const Json& value) {
    std::string text;
    if (value.is_array()) {
        for (const Json& item : value) {
            text += plainText(item) + ";";
        }
        text.resize(text.size() - std::min<std::size_t>(text.size(), 1));
    } else {
        text = plainText(value);
    }
    if (text.find_first_of(",\"\r\n") == std::string::npos) {
        return text;
    }
    std::string quoted = "\"";
    for (const char character : text) {
        quoted += character == '"' ? "\"\"" : std::string(1, character);
    }
    return quoted + "\"";
}

template <typename Field>
std::string csvLine(const Json& record, Field field) {
    std::string line;
    const char* separator = "";
    for (const auto& member : record.items()) {
        line += separator + field(member);
        separator = ",";
    }
    return line;
}

std::string jsonLine(const Json& record) {
    constexpr int NO_INDENT = -1;
    // ASCII: programs read pipes in different code pages.
    return record.dump(NO_INDENT, ' ', true, Json::error_handler_t::replace);
}

bool isUtf8(std::string_view bytes) {
    return mrl::toUtf8(mrl::toUtf16(bytes)) == bytes;
}

} // namespace

std::optional<Format> formatNamed(std::string_view word) {
    for (const FormatWord& known : formatWords) {
        if (known.word == word) {
            return known.format;
        }
    }
    return std::nullopt;
}

void addName(Json& record, std::string_view bytes) {
    constexpr std::string_view DIGITS = "0123456789abcdef";
    std::string hex;
    for (const char byte : bytes) {
        const auto unit = static_cast<unsigned char>(byte);
        hex += DIGITS[unit >> 4U];
        hex += DIGITS[unit & 0x0FU];
    }
    record["name"] = isUtf8(bytes) ? Json(std::string(bytes)) : Json(nullptr);
    record["nameHex"] = hex;
}

bool Writer::write(const Json& record) {
    const bool csv = m_format == Format::CSV;
    std::string text;
    const auto add = [&](const std::string& line) {
        text += m_stream.isTerminal() ? mrl::escapeControls(line) : line;
        text += csv ? "\r\n" : "\n";
    };
    if (csv && !m_begun) {
        add(csvLine(record, [](const auto& member) { return csvField(member.key()); }));
    }
    m_begun = true;
    add(csv ? csvLine(record, [](const auto& member) { return csvField(member.value()); })
            : jsonLine(record));
    m_stream << std::string_view(text);
    m_stream.flush();
    return !m_stream.hasLost();
}

} // namespace records
