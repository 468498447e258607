#include "reports/ReportName.h"

#include <tesk5/BadInput.h>
#include <tesk5/ModuleInfo.h>
#include <tesk5/Texts.h>

#include "texts/Lists.h"

#include <mrl/Files.h>
#include <mrl/Sha256.h>
#include <mrl/System.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>

namespace tesk5 {

namespace {

// Windows takes these for devices, whatever extension follows, in any letter case.
constexpr std::string_view deviceNames[] = {
    "CON",  "PRN",  "AUX",  "NUL",  "COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7",
    "COM8", "COM9", "LPT1", "LPT2", "LPT3", "LPT4", "LPT5", "LPT6", "LPT7", "LPT8", "LPT9"};

std::string encoded(char letter) {
    char code[4];
    std::snprintf(code, sizeof code, "%%%02X",
                  static_cast<unsigned>(static_cast<unsigned char>(letter)));
    return code;
}

bool isRefused(char letter) {
    constexpr std::string_view REFUSED = "<>:\"/\\|?*%";
    constexpr unsigned char FIRST_PRINTABLE = 0x20;
    constexpr unsigned char DELETE = 0x7F;
    const auto code = static_cast<unsigned char>(letter);
    return code < FIRST_PRINTABLE || code == DELETE ||
           REFUSED.find(letter) != std::string_view::npos;
}

bool isDeviceName(const std::string& value) {
    const std::string stem = value.substr(0, value.find('.'));
    return std::any_of(std::begin(deviceNames), std::end(deviceNames),
                       [&stem](std::string_view name) {
                           return mrl::equalNoCase(mrl::toUtf16(stem), mrl::toUtf16(name));
                       });
}

// Room for a few values in one part of a path, which has 255 bytes on most file systems.
constexpr std::size_t LONGEST = 72;

std::string shortened(const std::string& text, const std::string& value) {
    constexpr std::size_t KEPT = 48;
    constexpr std::size_t DIGITS = 16;
    constexpr std::size_t ENCODED = 3;
    constexpr unsigned CONTINUATION = 0x80;
    constexpr unsigned CONTINUATION_BITS = 0xC0;
    std::size_t end = KEPT;
    while ((static_cast<unsigned char>(text[end]) & CONTINUATION_BITS) == CONTINUATION) {
        --end; // not in the middle of a character
    }
    const std::size_t percent = text.rfind('%', end - 1);
    if (percent != std::string::npos && percent + ENCODED > end) {
        end = percent;
    }
    return text.substr(0, end) + "~" + mrl::sha256Of(value).substr(0, DIGITS);
}

// `value` as a part of a file's name.
std::string inFileName(const std::string& value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        const bool isLast = i + 1 == value.size();
        const bool isDropped = isLast && (value[i] == '.' || value[i] == ' '); // by Windows
        text += isRefused(value[i]) || isDropped ? encoded(value[i]) : std::string(1, value[i]);
    }
    if (isDeviceName(value)) {
        text = encoded(value.front()) + text.substr(1);
    }
    return text.size() > LONGEST ? shortened(text, value) : text;
}

// The milliseconds with which the identifier begins, as a date without characters that Windows
// refuses.
std::string timeIn(const std::string& identifier) {
    constexpr int HEXADECIMAL = 16;
    const std::string digits = identifier.substr(0, 8) + identifier.substr(9, 4);
    const std::chrono::milliseconds since1970(std::stoll(digits, nullptr, HEXADECIMAL));
    std::string text = mrl::utcText(
        mrl::Clock::UtcTime(std::chrono::duration_cast<mrl::Clock::UtcTime::duration>(since1970)));
    text.resize(text.find('.'));
    std::erase(text, '-');
    std::erase(text, ':');
    return text + "Z";
}

// `file` taken apart: calls `onText` for each piece of it and `onName` for each name in braces.
template <typename OnText, typename OnName>
void read(const std::string& file, OnText onText, OnName onName) {
    for (std::size_t i = 0; i < file.size();) {
        const bool isBrace = file[i] == '{' || file[i] == '}';
        const bool isDoubled = isBrace && i + 1 < file.size() && file[i + 1] == file[i];
        if (isBrace && !isDoubled) {
            const std::size_t end = file[i] == '{' ? file.find('}', i) : std::string::npos;
            const std::size_t next = end == std::string::npos ? file.size() : end + 1;
            onName(file.substr(i, next - i));
            i = next;
        } else {
            onText(file[i]);
            i += isDoubled ? 2 : 1;
        }
    }
}

NameParts::const_iterator partNamed(const std::string& braces, const NameParts& parts) {
    return std::find_if(parts.begin(), parts.end(),
                        [&braces](const auto& part) { return braces == "{" + part.first + "}"; });
}

} // namespace

NameParts namePartsOf(const RunIdentity& identity, const std::string& result) {
    NameParts parts = {{"run", identity.identifier},
                       {"time", identity.identifier.empty() ? "" : timeIn(identity.identifier)},
                       {"result", result},
                       {"program", std::string(moduleInfo().name)}};
    if (identity.pc && !identity.pc->name.empty()) {
        parts.emplace_back("pc", identity.pc->name);
    }
    for (const Tag& tag : identity.tags) {
        parts.emplace_back(tag.name, tag.value);
    }
    return parts;
}

NameParts namePartsOf(const RunIdentity& identity) {
    NameParts parts = namePartsOf(identity, {});
    std::erase_if(parts, [](const auto& part) { return part.first == "result"; });
    return parts;
}

bool isNamedAnew(const std::string& file, const NameParts& parts) {
    bool found = false;
    read(
        file, [](char /*letter*/) {},
        [&](const std::string& braces) {
            found = true;
            if (partNamed(braces, parts) == parts.end()) {
                const auto names =
                    textsOf(parts, [](const auto& part) { return "{" + part.first + "}"; });
                throw BadInput{
                    message("INPUT_REPORT_NAME",
                            {{"File", file}, {"Braces", braces}, {"Known", listed(names)}})};
            }
        });
    return found;
}

std::string filledName(const std::string& file, const NameParts& parts) {
    isNamedAnew(file, parts);
    std::string name;
    read(
        file, [&name](char letter) { name += letter; },
        [&](const std::string& braces) { name += inFileName(partNamed(braces, parts)->second); });
    return name;
}

std::string takenName(const std::string& path) {
    const std::filesystem::path wanted = mrl::System::path(path);
    std::filesystem::path taken = wanted;
    std::error_code ignored; // the report then says why it cannot be written
    std::filesystem::create_directories(wanted.parent_path(), ignored);
    for (unsigned number = 2; !mrl::createNew(taken) && std::filesystem::exists(taken, ignored);
         ++number) {
        taken = wanted;
        taken.replace_filename(wanted.stem());
        taken += "-" + std::to_string(number);
        taken += wanted.extension();
    }
    const std::u8string text = taken.u8string();
    return {text.begin(), text.end()};
}

} // namespace tesk5
