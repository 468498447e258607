// Configuration files: they are merged into a command line, or refused with one line.
#include "ExampleModule.h"
#include "Refusal.h"

#include <support/InputFile.h>

#include <commandline/ConfigFile.h>
#include <run/Plan.h>

#include <tesk5/Language.h>
#include <tesk5/Texts.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::InputFile file("station.toml");
    file.write(fuzz::viewOf(data, size));
    tesk5::Language::current().set("en");
    tesk5::Registry& registry = fuzz::registry();
    tesk5::CommandLine line;
    line.command = tesk5::Command::run;
    line.configFile = file.path();
    line.settings = {{"SSID", "Given"}};
    try {
        const tesk5::CommandLine whole = tesk5::withConfiguration(line, registry);
        fuzz::require(whole.configFile == line.configFile, "the name of the file stays");
        fuzz::require(!whole.settings.empty() && whole.settings[0].value == "Given",
                      "the command line overrides the file");
        fuzz::require(!whole.logLevel || (*whole.logLevel >= 0 && *whole.logLevel <= 5),
                      "a log level is from 0 to 5");
        const auto tests = tesk5::chooseTests(registry, whole.tests);
        tesk5::applySettings(registry, whole.settings, tests);
    } catch (const tesk5::BadInput& refused) {
        fuzz::requireReadableRefusal(refused);
    }
    return 0;
}
