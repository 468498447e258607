// Conversions and what is shown of strangers' texts: never more than a reader sees, never
// ill-formed.
#include <support/Inert.h>
#include <support/InputFile.h>
#include <support/Promise.h>

#include <mrl/DisplayWidth.h>
#include <mrl/String.h>
#include <mrl/Unicode.h>

#include <cstring>

namespace {

void checkUtf8(std::string_view bytes) {
    const mrl::CharString units = mrl::toUtf16(bytes);
    fuzz::promise(units.size() <= bytes.size(),
                  "UTF-16 takes no more units than UTF-8 takes bytes");
    const std::string mended = mrl::toUtf8(units);
    fuzz::promise(mrl::toUtf16(mended) == units, "what has been mended once stays as it is");

    const std::string shown = mrl::escapeControls(bytes);
    fuzz::promiseNone(test::offenceIn(shown), "escapeControls");
    fuzz::promise(mrl::escapeControls(shown) == shown, "what is visible stays as it is");

    const std::size_t columns = mrl::columnsOf(shown);
    for (const std::size_t room : {std::size_t{0}, std::size_t{1}, std::size_t{7}, columns}) {
        const std::string fitted = mrl::fittedToColumns(shown, room);
        fuzz::promise(mrl::columnsOf(fitted) <= room, "a fitted text has room");
        fuzz::promiseNone(test::offenceIn(fitted), "fittedToColumns");
    }
    fuzz::promise(mrl::fittedToColumns(shown, columns) == shown, "what has room is not cut");
}

void checkUtf16(std::string_view bytes) {
    mrl::CharString units(bytes.size() / sizeof(mrl::Char), 0);
    std::memcpy(units.data(), bytes.data(), units.size() * sizeof(mrl::Char));
    const std::string text = mrl::toUtf8(units);
    fuzz::promise(mrl::toUtf8(mrl::toUtf16(text)) == text, "what UTF-8 says stays as it is");
    fuzz::promise(mrl::toUtf16(text).size() == units.size(), "no unit is lost or made");

    const mrl::String name{mrl::CharView(units)};
    mrl::String trimmed = name;
    trimmed.trim();
    fuzz::promise(name.find(trimmed) != mrl::String::NOT_FOUND, "trimming only takes away");
    fuzz::promise(mrl::String::equalNoCase(name, name), "a name is equal to itself");
    const std::size_t middle = units.size() / 2;
    fuzz::promise(name.subString(0, middle) + name.subString(middle) == name,
                  "two halves make the whole");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes = fuzz::viewOf(data, size);
    checkUtf8(bytes);
    checkUtf16(bytes);
    return 0;
}
