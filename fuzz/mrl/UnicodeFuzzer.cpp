// Conversions between UTF-8 and UTF-16, escaping and fitting of arbitrary bytes: the results are
// well-formed and safe to show.
#include <support/InputFile.h>
#include <support/Require.h>
#include <support/SafeText.h>

#include <mrl/DisplayWidth.h>
#include <mrl/String.h>
#include <mrl/Unicode.h>

#include <cstring>

namespace {

void checkUtf8(std::string_view bytes) {
    const mrl::CharString units = mrl::toUtf16(bytes);
    fuzz::require(units.size() <= bytes.size(),
                  "UTF-16 takes no more units than UTF-8 takes bytes");
    const std::string wellFormed = mrl::toUtf8(units);
    fuzz::require(mrl::toUtf16(wellFormed) == units, "well-formed text is not changed");

    const std::string shown = mrl::escapeControls(bytes);
    fuzz::requireNone(test::findUnsafe(shown), "escapeControls");
    fuzz::require(mrl::escapeControls(shown) == shown, "escaped text is not escaped again");

    const std::size_t columns = mrl::columnsOf(shown);
    for (const std::size_t room : {std::size_t{0}, std::size_t{1}, std::size_t{7}, columns}) {
        const std::string fitted = mrl::fittedToColumns(shown, room);
        fuzz::require(mrl::columnsOf(fitted) <= room, "a fitted text fits");
        fuzz::requireNone(test::findUnsafe(fitted), "fittedToColumns");
    }
    fuzz::require(mrl::fittedToColumns(shown, columns) == shown, "a text that fits is not cut");
}

void checkUtf16(std::string_view bytes) {
    mrl::CharString units(bytes.size() / sizeof(mrl::Char), 0);
    std::memcpy(units.data(), bytes.data(), units.size() * sizeof(mrl::Char));
    const std::string text = mrl::toUtf8(units);
    fuzz::require(mrl::toUtf8(mrl::toUtf16(text)) == text,
                  "well-formed text comes back from UTF-16");
    fuzz::require(mrl::toUtf16(text).size() == units.size(), "the number of units stays");

    const mrl::String name{mrl::CharView(units)};
    mrl::String trimmed = name;
    trimmed.trim();
    fuzz::require(name.find(trimmed) != mrl::String::NOT_FOUND,
                  "a trimmed text is part of the text");
    fuzz::require(mrl::String::equalNoCase(name, name), "a name is equal to itself");
    const std::size_t middle = units.size() / 2;
    fuzz::require(name.subString(0, middle) + name.subString(middle) == name,
                  "two halves make the text");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = fuzz::viewOf(data, size);
    checkUtf8(bytes);
    checkUtf16(bytes);
    return 0;
}
