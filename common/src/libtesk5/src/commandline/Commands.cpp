#include "commandline/Commands.h"

#include <tesk5/BadInput.h>
#include <tesk5/Language.h>
#include <tesk5/ModuleInfo.h>
#include <tesk5/Texts.h>

#include "commandline/CommandLine.h"
#include "commandline/TagOptions.h"
#include "history/HistoryCommand.h"
#include "model/Decimal.h"
#include "reports/ReportKinds.h"
#include "texts/Lists.h"
#include "texts/ParameterText.h"

#include <algorithm>

namespace tesk5 {

namespace {

template <std::optional<std::string> CommandLine::*MEMBER>
bool setText(CommandLine& line, std::string_view /*name*/, const std::string& value) {
    line.*MEMBER = value;
    return true;
}

template <bool CommandLine::*MEMBER>
bool setSwitch(CommandLine& line, std::string_view /*name*/, const std::string& value) {
    line.*MEMBER = value == "true";
    return true;
}

bool setLanguageTag(CommandLine& line, std::string_view /*name*/, const std::string& tag) {
    line.language = tag;
    return Language::hasTextsFor(tag);
}

bool addSetting(CommandLine& line, std::string_view /*name*/, const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0) {
        return false;
    }
    line.settings.push_back(
        {TeskString(text.substr(0, equals)), TeskString(text.substr(equals + 1))});
    return true;
}

bool addReport(CommandLine& line, std::string_view name, const std::string& file) {
    for (const ReportKind& kind : reportKinds()) {
        if (name == kind.option) {
            line.reports.push_back({&kind, file});
        }
    }
    return true;
}

bool setLogLevel(CommandLine& line, std::string_view /*name*/, const std::string& text) {
    const std::optional<mrl::Uint32> level = parseUint32(text);
    if (!level || *level > HIGHEST_LOG_LEVEL) {
        return false;
    }
    line.logLevel = static_cast<int>(*level);
    return true;
}

bool setColours(CommandLine& line, std::string_view /*name*/, const std::string& word) {
    using Colours = mrl::OutputStream::Colours;
    constexpr std::pair<const char*, Colours> words[] = {
        {"auto", Colours::automatic}, {"always", Colours::always}, {"never", Colours::never}};
    const auto* const known = std::find_if(std::begin(words), std::end(words),
                                           [&word](const auto& row) { return row.first == word; });
    if (known == std::end(words)) {
        return false;
    }
    line.colours = known->second;
    return true;
}

bool setCaptureNames(CommandLine& line, std::string_view /*name*/, const std::string& word) {
    line.hideNames = word == "hidden";
    return line.hideNames || word == "shown";
}

bool setModuleOption(CommandLine& line, std::string_view name, const std::string& text) {
    const CommandOption& option = *line.moduleCommand->option(name);
    const bool numeric = option.range.has_value();
    const DataType type = numeric                  ? DataType::INTEGER()
                          : option.choices.empty() ? DataType::STRING()
                                                   : DataType::CHOICE();
    Parameter value(option.name, type, "", false, true);
    value.setChoices(option.choices);
    if (numeric) {
        value.setRange(*option.range);
    }
    const std::string refusal = refusalText(value, TeskString(text));
    if (!refusal.empty()) {
        throw BadInput{message("INPUT_SETTING_REFUSED",
                               {{"Setting", option.name + (" " + text)}, {"Reason", refusal}})};
    }
    value.set(TeskString(text));
    line.moduleOptions[option.name] = value.value().valueString().utf8();
    return true;
}

bool takesParameters(const ModuleCommand& command, std::string_view /*name*/) {
    return !command.parameters.empty();
}

bool takesDevices(const ModuleCommand& command, std::string_view /*name*/) {
    return command.test != nullptr;
}

bool takesEither(const ModuleCommand& command, std::string_view name) {
    return takesParameters(command, name) || takesDevices(command, name);
}

// Whether options of two commands are one option to a person.
bool areOne(const CommandOption& a, const CommandOption& b) {
    return std::string_view(a.name) == b.name && std::string_view(a.help) == b.help;
}

// The module's commands, and that of the framework which is made as one.
std::vector<const ModuleCommand*> moduleCommands() {
    static const ModuleCommand history = historyCommand();
    std::vector<const ModuleCommand*> commands;
    for (const ModuleCommand& command : moduleInfo().commands) {
        commands.push_back(&command);
    }
    commands.push_back(&history);
    return commands;
}

// The options of these commands, each once.
std::vector<OptionDescription> moduleOptions() {
    std::vector<OptionDescription> options;
    for (const ModuleCommand* command : moduleCommands()) {
        for (const CommandOption& option : command->options) {
            const bool known = std::any_of(options.begin(), options.end(), [&](const auto& other) {
                return areOne(*other.ofModule, option);
            });
            if (!known) {
                options.push_back({option.name,
                                   option.argument,
                                   option.help,
                                   option.example,
                                   &setModuleOption,
                                   {Command::ofModule},
                                   nullptr,
                                   nullptr,
                                   &option});
            }
        }
    }
    return options;
}

bool chooseTemplate(CommandLine& line, std::string_view /*name*/, const std::string& /*value*/) {
    line.command = Command::configTemplate;
    return true;
}

} // namespace

const std::vector<CommandDescription>& commandDescriptions() {
    static const std::vector<CommandDescription> commands = [] {
        std::vector<CommandDescription> all = {
            {Command::list, "list", "", "HELP_LIST", {"list", "list --device intel"}},
            {Command::run,
             "run",
             "[TEST...]",
             "HELP_RUN",
             {moduleInfo().examplesOfRun.begin(), moduleInfo().examplesOfRun.end()}},
            {Command::doctor, "doctor", "", "HELP_DOCTOR", {"doctor", "doctor --set SSID=Lab"}},
        };
        if (moduleInfo().captures != nullptr) {
            all.push_back({Command::replay,
                           "replay",
                           "FILE",
                           "HELP_REPLAY",
                           {"replay field.jsonl", "replay field.jsonl --json report.json"}});
        }
        for (const ModuleCommand* command : moduleCommands()) {
            all.push_back({Command::ofModule, command->name, command->arguments, command->help,
                           command->examples, command});
        }
        return all;
    }();
    return commands;
}

const CommandDescription& descriptionOf(Command command) {
    const std::vector<CommandDescription>& all = commandDescriptions();
    return *std::find_if(all.begin(), all.end(), [command](const CommandDescription& description) {
        return description.command == command;
    });
}

const std::vector<OptionDescription>& optionDescriptions() {
    using Commands = std::vector<Command>;
    const Commands ALL;
    const Commands LIST = {Command::list};
    const Commands RUN = {Command::run};
    const Commands RUN_AND_REPLAY = {Command::run, Command::replay};
    const Commands WITH_PARAMETERS = {Command::run, Command::doctor, Command::replay};
    const Commands WITH_DEVICES = {Command::list, Command::run, Command::doctor};
    static const std::vector<OptionDescription> known = {
        {"--set", "NAME=VALUE", "HELP_SET", moduleInfo().exampleOfSet, &addSetting, WITH_PARAMETERS,
         "INPUT_SETTING_MALFORMED", &takesParameters},
        {"--device", "TEXT", "HELP_DEVICE", "--device intel", &setText<&CommandLine::device>,
         WITH_DEVICES, nullptr, &takesDevices},
        {"--devices", "FILE", "HELP_DEVICES", "--devices cards.json",
         &setText<&CommandLine::devicesFile>, WITH_DEVICES, nullptr, &takesDevices},
        {"--json", "FILE", "HELP_JSON", "--json report.json", &addReport, RUN_AND_REPLAY},
        {"--junit", "FILE", "HELP_JUNIT", "--junit report.xml", &addReport, RUN_AND_REPLAY},
        {"--html", "FILE", "HELP_HTML", "--html report.html", &addReport, RUN_AND_REPLAY},
        {"--ocp", "FILE", "HELP_OCP", "--ocp run.jsonl", &setText<&CommandLine::ocpFile>,
         RUN_AND_REPLAY},
        {"--wsjf", "FILE", "HELP_WSJF",
         "run --config station.toml --tag serial=A1 --wsjf unit.json", &addReport, RUN_AND_REPLAY},
        {"--openhtf", "FILE", "HELP_OPENHTF", "--openhtf record.json", &addReport, RUN_AND_REPLAY},
        {"--journal", "FILE", "HELP_JOURNAL", "run --config station.toml --journal line.jsonl",
         &setText<&CommandLine::journalFile>, RUN},
        {"--tag", "NAME=VALUE", "HELP_TAG", "--tag serial=A1234 --tag station=L3-07", &addTag, RUN,
         "INPUT_TAG_MALFORMED"},
        {"--tag-prompt", "NAME", "HELP_TAG_PROMPT", "--tag-prompt serial", &addTagPrompts, RUN},
        {"--require-tags", "NAMES", "HELP_REQUIRE_TAGS", "--require-tags serial --tag serial=A1234",
         &addRequiredTags, RUN},
        {"--no-identity", nullptr, "HELP_NO_IDENTITY", "--json report.json --no-identity",
         &setSwitch<&CommandLine::noIdentity>, RUN},
        {"--full-log", nullptr, "HELP_FULL_LOG", "--html report.html --full-log",
         &setSwitch<&CommandLine::fullLog>, RUN_AND_REPLAY},
        {"--events", nullptr, "HELP_EVENTS", "run --config station.toml --events",
         &setSwitch<&CommandLine::events>, RUN_AND_REPLAY},
        {"--config", "FILE", "CONFIG_HELP_CONFIG", "run --config station.toml --set SSID=Lab",
         &setText<&CommandLine::configFile>, RUN, nullptr, &takesEither},
        {"--capture", "FILE", "HELP_CAPTURE", "--capture field.jsonl",
         &setText<&CommandLine::captureFile>, WITH_DEVICES},
        {"--capture-names", "WORD", "HELP_CAPTURE_NAMES",
         "--capture field.jsonl --capture-names hidden", &setCaptureNames, WITH_DEVICES,
         "INPUT_CAPTURE_NAMES"},
        {"--config-template", nullptr, "CONFIG_HELP_TEMPLATE", "list --config-template",
         &chooseTemplate, LIST},
        {"--log", "FILE", "HELP_LOG", "--log antenna.log", &setText<&CommandLine::logFile>},
        {"--log-level", "N", "HELP_LOG_LEVEL", "--log-level 0", &setLogLevel, ALL,
         "INPUT_LOG_LEVEL"},
        {"--check", nullptr, "HELP_CHECK", "run --config station.toml --check",
         &setSwitch<&CommandLine::check>, RUN},
        {"--quiet", nullptr, "HELP_QUIET", "run --config station.toml --quiet",
         &setSwitch<&CommandLine::quiet>, RUN_AND_REPLAY},
        {"--color", "WHEN", "HELP_COLOR", "--color never", &setColours, ALL, "INPUT_COLOR"},
        {"--language", "TAG", "HELP_LANGUAGE", "--language de", &setLanguageTag, ALL,
         "INPUT_UNKNOWN_LANGUAGE"},
        {"--version", nullptr, "HELP_VERSION", "--version"},
        {"--help", nullptr, "HELP_HELP", "run --help"},
    };
    static const std::vector<OptionDescription> options = [] {
        std::vector<OptionDescription> offered;
        std::copy_if(known.begin(), known.end(), std::back_inserter(offered),
                     [](const OptionDescription& option) {
                         return moduleInfo().captures != nullptr ||
                                !std::string_view(option.name).starts_with("--capture");
                     });
        const std::vector<OptionDescription> ofModule = moduleOptions();
        offered.insert(offered.end(), ofModule.begin(), ofModule.end());
        return offered;
    }();
    return options;
}

const OptionDescription* optionNamed(std::string_view name) {
    const std::vector<OptionDescription>& options = optionDescriptions();
    const auto known =
        std::find_if(options.begin(), options.end(),
                     [name](const OptionDescription& option) { return name == option.name; });
    return known == options.end() ? nullptr : &*known;
}

std::string refusalOf(const char* refusal, const std::string& value) {
    return message(
        refusal,
        {{"Text", value}, {"Language", value}, {"Languages", listed(Language::available())}});
}

bool goesWith(const OptionDescription& option, const CommandDescription& command) {
    if (option.commands.empty()) {
        return true;
    }
    if (command.ofModule != nullptr && option.ofModule != nullptr) {
        const CommandOption* const own = command.ofModule->option(option.name);
        return own != nullptr && areOne(*own, *option.ofModule);
    }
    if (command.ofModule != nullptr) {
        return option.goesWithModule != nullptr &&
               option.goesWithModule(*command.ofModule, option.name);
    }
    return std::find(option.commands.begin(), option.commands.end(), command.command) !=
           option.commands.end();
}

std::vector<const CommandDescription*> takersOf(const OptionDescription& option) {
    std::vector<const CommandDescription*> takers;
    for (const CommandDescription& command : commandDescriptions()) {
        if (goesWith(option, command)) {
            takers.push_back(&command);
        }
    }
    return takers;
}

const CommandOption* ModuleCommand::option(std::string_view named) const {
    const auto own = std::find_if(options.begin(), options.end(), [named](const auto& candidate) {
        return named == candidate.name;
    });
    return own == options.end() ? nullptr : &*own;
}

} // namespace tesk5
