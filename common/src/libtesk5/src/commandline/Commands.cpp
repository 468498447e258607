#include "commandline/Commands.h"

#include <tesk5/ModuleInfo.h>

#include <algorithm>

namespace tesk5 {

const std::vector<CommandDescription>& commandDescriptions() {
    static const std::vector<CommandDescription> commands = [] {
        std::vector<CommandDescription> all = {
            {Command::list, "list", "", "HELP_LIST", {"list", "list --device intel"}},
            {Command::run,
             "run",
             "[TEST...]",
             "HELP_RUN",
             {"run --set SSID=Lab --set FailingSignalStrength=20",
              "run --config station.toml --json report.json", "run DiversityTest --device intel"}},
            {Command::doctor, "doctor", "", "HELP_DOCTOR", {"doctor", "doctor --set SSID=Lab"}},
        };
        for (const ModuleCommand& command : moduleInfo().commands) {
            all.push_back({Command::ofModule,
                           command.name,
                           command.arguments,
                           command.help,
                           {command.example},
                           &command});
        }
        return all;
    }();
    return commands;
}

const std::vector<OptionDescription>& optionDescriptions() {
    static const std::vector<OptionDescription> options = {
        {"--set",
         "NAME=VALUE",
         "HELP_SET",
         "--set SSID=Lab --set WarningSignalStrength=40",
         {Command::run, Command::doctor}},
        {"--device",
         "TEXT",
         "HELP_DEVICE",
         "--device intel",
         {Command::list, Command::run, Command::doctor}},
        {"--devices",
         "FILE",
         "HELP_DEVICES",
         "--devices cards.json",
         {Command::list, Command::run, Command::doctor}},
        {"--json", "FILE", "HELP_JSON", "--json report.json", {Command::run}},
        {"--junit", "FILE", "HELP_JUNIT", "--junit report.xml", {Command::run}},
        {"--html", "FILE", "HELP_HTML", "--html report.html", {Command::run}},
        {"--events", nullptr, "HELP_EVENTS", "run --config station.toml --events", {Command::run}},
        {"--config",
         "FILE",
         "CONFIG_HELP_CONFIG",
         "run --config station.toml --set SSID=Lab",
         {Command::run}},
        {"--config-template",
         nullptr,
         "CONFIG_HELP_TEMPLATE",
         "list --config-template",
         {Command::list}},
        {"--log", "FILE", "HELP_LOG", "--log antenna.log"},
        {"--log-level", "N", "HELP_LOG_LEVEL", "--log-level 0"},
        {"--quiet", nullptr, "HELP_QUIET", "run --config station.toml --quiet", {Command::run}},
        {"--color", "WHEN", "HELP_COLOR", "--color never"},
        {"--language", "TAG", "HELP_LANGUAGE", "--language de"},
        {"--version", nullptr, "HELP_VERSION", "--version"},
        {"--help", nullptr, "HELP_HELP", "run --help"},
    };
    return options;
}

bool goesWith(const OptionDescription& option, Command command) {
    return option.commands.empty() || std::find(option.commands.begin(), option.commands.end(),
                                                command) != option.commands.end();
}

} // namespace tesk5
