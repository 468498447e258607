// Configuration files: what they add to a command line, or one line with the place and the reason.
#include "ExampleModule.h"
#include "Refusal.h"

#include <support/InputFile.h>

#include <commandline/ConfigFile.h>
#include <run/Plan.h>

#include <tesk5/Texts.h>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::InputFile file("station.toml");
    file.write(fuzz::viewOf(data, size));
    tesk5::setLanguage("en");
    tesk5::Registry& registry = fuzz::registry();
    tesk5::CommandLine line;
    line.command = tesk5::Command::run;
    line.configFile = file.path();
    line.settings = {{"SSID", "Given"}};
    try {
        const tesk5::CommandLine whole = tesk5::withConfiguration(line, registry);
        fuzz::promise(whole.configFile == line.configFile, "the command line stays");
        fuzz::promise(!whole.settings.empty() && whole.settings[0].value == "Given",
                      "what the command line gives wins");
        fuzz::promise(!whole.logLevel || (*whole.logLevel >= 0 && *whole.logLevel <= 5),
                      "a log level is one");
        const auto tests = tesk5::chooseTests(registry, whole.tests);
        tesk5::applySettings(registry, whole.settings, tests);
    } catch (const tesk5::BadInput& refused) {
        fuzz::promiseRefusal(refused);
    }
    return 0;
}
