// The command line, read by CLI11. Every option belongs to the program rather than to a command,
// so that it may stand before the command or after it.
#include "CommandLine.h"

#include "BadInput.h"
#include "Decimal.h"
#include "ReportKinds.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>

namespace tesk5 {

namespace {

constexpr mrl::Uint32 HIGHEST_LOG_LEVEL = 5;
constexpr const char* SEE_HELP = "; --help shows what there is";

const OptionDescription* optionNamed(std::string_view name) {
    for (const OptionDescription& option : optionDescriptions()) {
        if (name == option.name) {
            return &option;
        }
    }
    return nullptr;
}

std::string needsValue(const OptionDescription& option) {
    return std::string(option.name) + " needs " + option.argument + ", as in " + option.example;
}

// The parser would take whatever follows an option as its value, the next option included, and
// skip an empty value: a report named "--log" is not what anybody meant. Of a switch's value it
// would make what it likes.
void refuseMisplacedValues(const std::vector<std::string>& arguments) {
    for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
        const std::string& argument = arguments[i];
        const std::size_t equals = argument.find('=');
        const OptionDescription* option = optionNamed(argument.substr(0, equals));
        if (option == nullptr) {
            continue;
        }
        if (option->argument == nullptr) {
            if (equals != std::string::npos) {
                throw BadInput{std::string(option->name) + " takes no value; leave " +
                               inQuotes(argument.substr(equals)) + " out"};
            }
            continue;
        }
        if (equals != std::string::npos) {
            if (equals + 1 == argument.size()) {
                throw BadInput{needsValue(*option)};
            }
            continue;
        }
        ++i;
        if (i == arguments.size() || arguments[i].empty() || arguments[i].starts_with("--")) {
            throw BadInput{needsValue(*option)};
        }
    }
}

// What the parser made of the arguments, still as texts.
class ParsedArguments {
public:
    explicit ParsedArguments(const std::vector<std::string>& arguments) {
        m_app.allow_windows_style_options(false); // "/x" is the same everywhere: no option
        m_app.fallthrough();
        m_app.require_subcommand(0, 1);
        m_app.set_help_flag("--help,-h");
        m_app.set_version_flag("--version", std::string());
        for (const OptionDescription& option : optionDescriptions()) {
            if (option.argument != nullptr) {
                m_options[option.name] =
                    m_app.add_option(option.name)->take_all()->allow_extra_args(false);
            } else if (m_app.get_option_no_throw(option.name) == nullptr) {
                m_options[option.name] = m_app.add_flag(option.name);
            }
        }
        m_app.add_subcommand("list");
        m_run = m_app.add_subcommand("run");
        m_tests = m_run->add_option("TEST", m_testNames);
        parse(arguments);
    }

    bool helpWanted() const { return m_helpWanted; }
    bool versionWanted() const { return m_versionWanted; }
    bool runWanted() const { return m_run->parsed(); }
    const std::vector<std::string>& tests() const { return m_tests->results(); }

    const std::vector<std::string>& values(const char* option) const {
        return m_options.at(option)->results();
    }

    /// Whether a switch is there.
    bool given(const char* option) const { return !values(option).empty(); }

    /// The value of an option that may be given once.
    std::optional<std::string> value(const char* option) const {
        const std::vector<std::string>& all = values(option);
        if (all.size() > 1) {
            throw BadInput{std::string(option) + " is given " + std::to_string(all.size()) +
                           " times; give it once"};
        }
        return all.empty() ? std::nullopt : std::optional(all.front());
    }

private:
    void parse(std::vector<std::string> arguments) {
        std::reverse(arguments.begin(), arguments.end()); // the parser takes them from the back
        try {
            m_app.parse(std::move(arguments));
        } catch (const CLI::CallForHelp&) {
            m_helpWanted = true;
        } catch (const CLI::CallForVersion&) {
            m_versionWanted = true;
        } catch (const CLI::ExtrasError&) {
            const std::vector<std::string> unknown = m_app.remaining(true);
            throw BadInput{aboutUnknown(unknown.empty() ? std::string() : unknown.front())};
        } catch (const CLI::ParseError& failure) {
            throw BadInput{std::string(failure.what()) + SEE_HELP};
        }
    }

    std::string aboutUnknown(const std::string& argument) const {
        if (argument.starts_with("-")) {
            std::vector<std::string> names;
            for (const OptionDescription& option : optionDescriptions()) {
                names.emplace_back(option.name);
            }
            return "there is no option " + inQuotes(argument) + nearestHint(argument, names) +
                   SEE_HELP;
        }
        if (m_app.get_subcommands().empty()) {
            return "there is no command " + inQuotes(argument) + "; the commands are list and run";
        }
        return "the command list takes no " + inQuotes(argument) +
               "; leave it out, or use the command run";
    }

    CLI::App m_app;
    CLI::App* m_run = nullptr;
    CLI::Option* m_tests = nullptr;
    std::vector<std::string> m_testNames;
    std::map<std::string, CLI::Option*> m_options;
    bool m_helpWanted = false;
    bool m_versionWanted = false;
};

Setting settingOf(const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0) {
        throw BadInput{"--set " + inQuotes(text) +
                       " is not NAME=VALUE; write it as in --set SSID=Lab"};
    }
    return {TeskString(text.substr(0, equals)), TeskString(text.substr(equals + 1))};
}

int logLevelOf(const std::string& text) {
    const std::optional<mrl::Uint32> level = parseUint32(text);
    if (!level || *level > HIGHEST_LOG_LEVEL) {
        throw BadInput{"--log-level " + inQuotes(text) + " is no level; give a number from 0 to 5"};
    }
    return static_cast<int>(*level);
}

void refuseOutsideRun(const ParsedArguments& parsed) {
    std::vector<const char*> options = {"--set", "--events"};
    for (const ReportKind& kind : reportKinds()) {
        options.push_back(kind.option);
    }
    for (const char* option : options) {
        if (!parsed.values(option).empty()) {
            throw BadInput{std::string(option) +
                           " goes with the command run, and nothing is to be run; add run"};
        }
    }
}

} // namespace

std::optional<std::string> languageAskedFor(const std::vector<std::string>& arguments) {
    constexpr std::string_view OPTION = "--language";
    for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
        const std::string& argument = arguments[i];
        if (argument == OPTION && i + 1 < arguments.size()) {
            return arguments[i + 1];
        }
        if (argument.starts_with(OPTION) && argument.substr(OPTION.size()).starts_with("=")) {
            return argument.substr(OPTION.size() + 1);
        }
    }
    return std::nullopt;
}

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
    refuseMisplacedValues(arguments);
    const ParsedArguments parsed(arguments);
    CommandLine line;
    if (parsed.helpWanted() || parsed.versionWanted()) {
        line.command = parsed.helpWanted() ? Command::help : Command::version;
        return line;
    }
    if (parsed.runWanted()) {
        line.command = Command::run;
    } else {
        refuseOutsideRun(parsed);
    }
    for (const std::string& name : parsed.tests()) {
        line.tests.emplace_back(name);
    }
    for (const std::string& text : parsed.values("--set")) {
        line.settings.push_back(settingOf(text));
    }
    line.device = parsed.value("--device");
    line.devicesFile = parsed.value("--devices");
    for (const ReportKind& kind : reportKinds()) {
        if (std::optional<std::string> file = parsed.value(kind.option)) {
            line.reports.push_back({&kind, std::move(*file)});
        }
    }
    line.events = parsed.given("--events");
    line.logFile = parsed.value("--log");
    line.language = parsed.value("--language");
    if (const std::optional<std::string> level = parsed.value("--log-level")) {
        line.logLevel = logLevelOf(*level);
    }
    return line;
}

} // namespace tesk5
