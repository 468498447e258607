// Text files: they are used, or ignored with one line in the log.
#include <support/CapturedLog.h>
#include <support/InputFile.h>
#include <support/Require.h>
#include <support/SafeText.h>

#include <texts/TextCatalogue.h>

#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

#include <mrl/Unicode.h>

namespace {

constexpr std::string_view BUILT_IN = R"({"PLAIN": "built in"})";
constexpr std::size_t COLUMNS = 20;

void look(const tesk5::TextCatalogue& catalogue) {
    for (const tesk5::TeskString key : {"PLAIN", "WEAK", "", "{"}) {
        const std::string& pattern = catalogue.find(key).utf8();
        const std::string text = tesk5::fillPlaceholders(
            pattern, {{"Name", "{Name}\r\n"}, {"Strength", mrl::Uint32{12}}, {"", pattern}});
        std::string shown;
        for (const std::string& line : tesk5::wrapped(text, COLUMNS)) {
            shown += mrl::escapeControls(line) + "\n";
        }
        fuzz::requireNone(test::findUnsafeInLines(shown), "a text");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::InputFile file("de.json");
    const std::string_view bytes = fuzz::viewOf(data, size);
    const test::CapturedLog log;
    file.write(bytes);
    const tesk5::TextCatalogue fromFile({{{file.folder()}, BUILT_IN}}, "de-AT");
    look(fromFile);
    const tesk5::TextCatalogue fromProgram({{{}, bytes}}, "de");
    look(fromProgram);
    const std::vector<std::string> lines = log.texts();
    for (const std::string& line : lines) {
        fuzz::requireNone(test::findUnsafe(line), "a line of the log");
    }
    const tesk5::TeskString plain("PLAIN");
    const bool used = fromFile.find(plain).utf8() != "built in";
    fuzz::require(lines.empty() || !used || lines.size() == 1,
                  "a file is used, or named in one line of the log");
    return 0;
}
