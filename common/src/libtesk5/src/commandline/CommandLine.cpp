// The command line, read by CLI11. Every option belongs to the program rather than to a command,
// so that it may stand before the command or after it.
#include "commandline/CommandLine.h"

#include <tesk5/BadInput.h>
#include <tesk5/Texts.h>

#include "texts/Lists.h"
#include "texts/UnknownName.h"

#include <mrl/Unicode.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <map>

namespace tesk5 {

namespace {

constexpr std::string_view REPEATABLE[] = {"--set", "--tag", "--tag-prompt"};

bool isRepeatable(std::string_view option) {
    return std::find(std::begin(REPEATABLE), std::end(REPEATABLE), option) != std::end(REPEATABLE);
}

// Whether two words differ in letter case alone.
bool sameWord(const std::string& a, const std::string& b) {
    return mrl::equalNoCase(mrl::toUtf16(a), mrl::toUtf16(b));
}

// How people ask for help in other programs.
constexpr std::string_view HELP_WORDS[] = {"help", "/?", "-?", "/h", "/help"};

const CommandDescription* commandNamed(std::string_view name) {
    for (const CommandDescription& command : commandDescriptions()) {
        if (name == command.name) {
            return &command;
        }
    }
    return nullptr;
}

// `arguments` with the command spelt as it is here: in any letter case, "help" and "/?" among them.
std::vector<std::string> withPlainCommand(std::vector<std::string> arguments) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string& argument = arguments[i];
        if (const OptionDescription* option = optionNamed(argument)) {
            i += option->argument != nullptr ? 1 : 0;
            continue;
        }
        for (const CommandDescription& command : commandDescriptions()) {
            if (sameWord(argument, command.name)) {
                argument = command.name;
                return arguments;
            }
        }
        for (const std::string_view word : HELP_WORDS) {
            if (sameWord(argument, std::string(word))) {
                argument = "--help";
                return arguments;
            }
        }
        if (!argument.starts_with("-")) {
            break;
        }
    }
    return arguments;
}

// The word with two dashes in the place of what word processors and other programs put before an
// option; nothing for a word that is none.
std::optional<std::string> asOption(const std::string& word) {
    for (const char* mark : {"\xE2\x80\x93", "\xE2\x80\x94", "\xE2\x88\x92", "/", "-"}) {
        if (word.starts_with(mark)) {
            const std::size_t name = word.find_first_not_of('-', std::string_view(mark).size());
            const std::size_t end = word.find('=');
            return name == std::string::npos ? std::string("--")
                                             : "--" + word.substr(name, end - name);
        }
    }
    return std::nullopt;
}

// Refuses a word that stands where a name is expected, but was meant otherwise.
void refuseLookalike(const std::string& word) {
    if (const std::optional<std::string> option = asOption(word)) {
        const std::string nearest =
            nearestName(*option, textsOf(optionDescriptions(), &OptionDescription::name));
        throw BadInput{
            message(nearest.empty() ? "INPUT_UNKNOWN_OPTION" : "INPUT_UNKNOWN_OPTION_NEAREST",
                    {{"Name", word}, {"Nearest", nearest}})};
    }
    const std::size_t equals = word.find('=');
    if (equals != std::string::npos && equals > 0) {
        throw BadInput{message("INPUT_SETTING_WITHOUT_OPTION", {{"Text", word}})};
    }
}

std::string needsValue(const OptionDescription& option) {
    return message(
        "INPUT_OPTION_WITHOUT_VALUE",
        {{"Option", option.name}, {"Argument", option.argument}, {"Example", option.example}});
}

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t") == std::string_view::npos;
}

const OptionDescription* optionOf(const std::string& argument) {
    const std::string name = argument.substr(0, argument.find('='));
    return optionNamed(name == "-h" ? "--help" : name);
}

// By itself the parser takes whatever follows an option as its value, even the next option, so that
// a report could be named "--log". It skips an empty value, reads the value of a switch as a number
// or as a word for yes or no, and drops what follows "--" where no names are taken.
void refuseMisplacedValues(const std::vector<std::string>& arguments) {
    bool afterCommand = false;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& argument = arguments[i];
        if (argument == "--") {
            if (!afterCommand) {
                throw BadInput{message("INPUT_UNKNOWN_OPTION", {{"Name", argument}})};
            }
            return;
        }
        const std::size_t equals = argument.find('=');
        const OptionDescription* option = optionOf(argument);
        if (option == nullptr) {
            afterCommand = afterCommand || commandNamed(argument) != nullptr;
            continue;
        }
        if (option->argument == nullptr) {
            if (equals != std::string::npos) {
                throw BadInput{
                    message("INPUT_OPTION_TAKES_NO_VALUE",
                            {{"Option", option->name}, {"Text", argument.substr(equals)}})};
            }
            continue;
        }
        if (equals != std::string::npos) {
            if (isBlank(std::string_view(argument).substr(equals + 1))) {
                throw BadInput{needsValue(*option)};
            }
            continue;
        }
        ++i;
        if (i == arguments.size() || isBlank(arguments[i]) || arguments[i].starts_with("--")) {
            throw BadInput{needsValue(*option)};
        }
    }
}

// The arguments by option and command, still as texts.
class ParsedArguments {
public:
    explicit ParsedArguments(const std::vector<std::string>& arguments) {
        m_app.allow_windows_style_options(false); // "/x" is the same everywhere: no option
        m_app.fallthrough();
        m_app.require_subcommand(0, 1);
        m_app.set_help_flag("--help,-h");
        m_app.set_version_flag("--version", std::string());
        for (const OptionDescription& option : optionDescriptions()) {
            if (m_options.contains(option.name)) {
                continue; // of another command
            }
            if (option.argument != nullptr) {
                m_options[option.name] =
                    m_app.add_option(option.name)->take_all()->allow_extra_args(false);
            } else if (m_app.get_option_no_throw(option.name) == nullptr) {
                m_options[option.name] = m_app.add_flag(option.name);
            }
        }
        for (const CommandDescription& command : commandDescriptions()) {
            CLI::App* app = m_app.add_subcommand(command.name);
            if (command.command == Command::replay) {
                m_replayed = app->add_option("FILE", m_names);
            } else if (command.command == Command::run) {
                m_tests = app->add_option("TEST", m_names);
            } else if (command.ofModule != nullptr && *command.arguments != 0) {
                m_moduleArguments.push_back(app->add_option("ARGUMENT", m_names));
            }
        }
        parse(arguments);
    }

    bool helpWanted() const { return m_helpWanted; }
    bool versionWanted() const { return m_versionWanted; }
    /// The command that is named; nothing when none is.
    const CommandDescription* command() const {
        const std::vector<CLI::App*> named = m_app.get_subcommands();
        return named.empty() ? nullptr : commandNamed(named.front()->get_name());
    }
    bool given(const char* option) const {
        const auto known = m_options.find(option);
        return known != m_options.end() && known->second->count() > 0;
    }
    const std::vector<std::string>& tests() const { return m_tests->results(); }
    std::vector<std::string> replayed() const {
        return m_replayed == nullptr ? std::vector<std::string>() : m_replayed->results();
    }
    /// What follows the command of the module that is named.
    std::vector<std::string> moduleArguments() const {
        for (const CLI::Option* arguments : m_moduleArguments) {
            if (arguments->count() > 0) {
                return arguments->results();
            }
        }
        return {};
    }

    /// The values of `option`, of which only those in REPEATABLE take several; "true" for a switch.
    const std::vector<std::string>& values(const OptionDescription& option) const {
        const CLI::Option* parsed = m_options.at(option.name);
        const std::vector<std::string>& all = parsed->results();
        if (option.argument != nullptr && all.size() > 1 && !isRepeatable(option.name)) {
            throw BadInput{message("INPUT_OPTION_TWICE", {{"Option", option.name},
                                                          {"Count", std::to_string(all.size())}})};
        }
        return all;
    }

private:
    void parse(std::vector<std::string> arguments) {
        std::reverse(arguments.begin(), arguments.end()); // the parser takes them from the back
        try {
            m_app.parse(std::move(arguments));
        } catch (const CLI::CallForHelp&) {
            refuseExtras(); // which the parser would not look at any more
            m_helpWanted = true;
        } catch (const CLI::CallForVersion&) {
            refuseExtras();
            m_versionWanted = true;
        } catch (const CLI::ExtrasError&) {
            refuseExtras();
        } catch (const CLI::ParseError& failure) {
            throw BadInput{message("INPUT_USAGE", {{"Problem", failure.what()}})};
        }
    }

    void refuseExtras() const {
        const std::vector<std::string> unknown = m_app.remaining(true);
        if (!unknown.empty()) {
            throw BadInput{refusalOf(unknown.front())};
        }
    }

    // Failure: throws BadInput for a word that was meant as an option or a setting
    std::string refusalOf(const std::string& argument) const {
        refuseLookalike(argument);
        const CommandDescription* named = command();
        if (named == nullptr) {
            const auto names = textsOf(commandDescriptions(), &CommandDescription::name);
            return aboutUnknown({"INPUT_UNKNOWN_COMMAND", "INPUT_UNKNOWN_COMMAND_NEAREST"},
                                argument, names, {{"Commands", listedWithAnd(names)}});
        }
        if (named->command == Command::doctor) {
            return message("INPUT_DOCTOR_TAKES_NO", {{"Name", argument}});
        }
        return message("INPUT_COMMAND_TAKES_NO", {{"Command", named->name}, {"Name", argument}});
    }

    CLI::App m_app;
    CLI::Option* m_tests = nullptr;
    CLI::Option* m_replayed = nullptr;
    std::vector<CLI::Option*> m_moduleArguments;
    std::vector<std::string> m_names; // where the parser puts them; results() has them too
    std::map<std::string, CLI::Option*> m_options;
    bool m_helpWanted = false;
    bool m_versionWanted = false;
};

// Whether `command` takes an option of that name.
bool isTaken(std::string_view name, const CommandDescription& command) {
    const std::vector<OptionDescription>& options = optionDescriptions();
    return std::any_of(options.begin(), options.end(), [&](const OptionDescription& option) {
        return name == option.name && goesWith(option, command);
    });
}

// Why `command`, which the arguments name or leave to the default, does not take `option`.
std::string foreignOption(const OptionDescription& option, const CommandDescription& command,
                          bool named) {
    if (option.ofModule != nullptr) {
        std::vector<std::string> takers;
        for (const CommandDescription& taker : commandDescriptions()) {
            if (isTaken(option.name, taker)) {
                takers.emplace_back(taker.name);
            }
        }
        return message("INPUT_OPTION_OF",
                       {{"Option", option.name}, {"Commands", listedWithAnd(takers)}});
    }
    if (command.command == Command::run) {
        return message("CONFIG_OPTION_NOT_WITH_RUN", {{"Option", option.name}});
    }
    const bool forRun =
        command.command == Command::list && goesWith(option, descriptionOf(Command::run));
    return forRun || !named ? message("INPUT_OPTION_NEEDS_RUN", {{"Option", option.name}})
                            : message("INPUT_COMMAND_TAKES_NO",
                                      {{"Command", command.name}, {"Name", option.name}});
}

void refuseForeignOptions(const ParsedArguments& parsed) {
    const CommandDescription* const named = parsed.command();
    const CommandDescription& command = named == nullptr ? descriptionOf(Command::list) : *named;
    for (const OptionDescription& option : optionDescriptions()) {
        if (parsed.given(option.name) && !isTaken(option.name, command)) {
            throw BadInput{foreignOption(option, command, named != nullptr)};
        }
    }
}

void applyOption(const OptionDescription& option, const ParsedArguments& parsed,
                 CommandLine& line) {
    if (!parsed.given(option.name)) {
        return;
    }
    line.given.insert(option.name);
    for (const std::string& value : parsed.values(option)) {
        if (!option.apply(line, option.name, value)) {
            throw BadInput{refusalOf(option.refusal, value)};
        }
    }
}

// A lone surrogate of Windows' command line, or ill-formed UTF-8: what was meant is lost, and a
// file of another name would be written.
void refuseIllFormed(const std::vector<std::string>& arguments) {
    constexpr std::string_view REPLACEMENT = "\xEF\xBF\xBD";
    for (const std::string& argument : arguments) {
        const std::string wellFormed = mrl::toUtf8(mrl::toUtf16(argument));
        if (wellFormed.find(REPLACEMENT) != std::string::npos) {
            throw BadInput{message("INPUT_ARGUMENT_ILL_FORMED", {{"Argument", wellFormed}})};
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

CommandLine parseCommandLine(const std::vector<std::string>& given) {
    refuseIllFormed(given);
    const std::vector<std::string> arguments = withPlainCommand(given);
    refuseMisplacedValues(arguments);
    const ParsedArguments parsed(arguments);
    CommandLine line;
    if (parsed.helpWanted() || parsed.versionWanted()) {
        line.command = parsed.helpWanted() ? Command::help : Command::version;
        line.helpOn = parsed.command();
        return line;
    }
    if (parsed.command() != nullptr) {
        line.command = parsed.command()->command;
        line.moduleCommand = parsed.command()->ofModule;
        line.moduleArguments = parsed.moduleArguments();
        line.replayed = parsed.replayed();
    }
    refuseForeignOptions(parsed);
    for (const std::string& name : parsed.tests()) {
        refuseLookalike(name);
        line.tests.emplace_back(name);
    }
    const CommandDescription& command =
        parsed.command() == nullptr ? descriptionOf(Command::list) : *parsed.command();
    for (const OptionDescription& option : optionDescriptions()) {
        if (goesWith(option, command)) {
            applyOption(option, parsed, line);
        }
    }
    return line;
}

} // namespace tesk5
