#include "commandline/ConfigKeys.h"

#include <tesk5/Texts.h>

#include "commandline/Commands.h"
#include "commandline/TomlText.h"
#include "model/Decimal.h"
#include "reports/ReportKinds.h"
#include "texts/BadInput.h"
#include "texts/Lists.h"

#include <algorithm>

namespace tesk5 {

namespace {

constexpr mrl::Uint32 HIGHEST_LOG_LEVEL = 5;
constexpr mrl::Uint32 HIGHEST_NUMBER = 0xFFFFFFFF;
const std::optional<std::string> USED;

ConfigKey textKey(const char* table, const char* name, const char* comment,
                  const std::string& example, std::optional<std::string> CommandLine::*member) {
    return {table,
            name,
            ConfigKey::Kind::text,
            false,
            0,
            message(comment),
            tomlText(example),
            [member](CommandLine& line, const std::string& value) {
                line.*member = value;
                return USED;
            }};
}

ConfigKey fileKey(const char* table, const char* name, const char* comment,
                  const std::string& example, std::optional<std::string> CommandLine::*member) {
    ConfigKey key = textKey(table, name, comment, example, member);
    key.kind = ConfigKey::Kind::file;
    return key;
}

// The example lists every registered test: deleting names is easier than finding them.
ConfigKey testsKey(const Registry& registry) {
    std::vector<std::string> names;
    std::string example;
    for (const Test& test : registry.tests) {
        names.push_back(test.name().utf8());
        example += (example.empty() ? "" : ", ") + tomlText(test.name().utf8());
    }
    const auto apply = [names](CommandLine& line,
                               const std::string& value) -> std::optional<std::string> {
        if (std::find(names.begin(), names.end(), value) == names.end()) {
            return aboutUnknown({"INPUT_UNKNOWN_TEST", "INPUT_UNKNOWN_TEST_NEAREST"}, value, names);
        }
        const TeskString name(value);
        if (std::find(line.tests.begin(), line.tests.end(), name) != line.tests.end()) {
            return message("INPUT_TEST_TWICE", {{"Name", value}});
        }
        line.tests.push_back(name);
        return USED;
    };
    return {
        "",   "tests", ConfigKey::Kind::text, true, 0, message("CONFIG_TESTS"), "[" + example + "]",
        apply};
}

ConfigKey languageKey() {
    ConfigKey key = textKey("", "language", "CONFIG_LANGUAGE", "en", &CommandLine::language);
    key.apply = [](CommandLine& line, const std::string& value) -> std::optional<std::string> {
        if (!hasLanguage(value)) {
            return message("INPUT_UNKNOWN_LANGUAGE",
                           {{"Language", value}, {"Languages", listed(availableLanguages())}});
        }
        line.language = value;
        return USED;
    };
    return key;
}

// The comment on a parameter: the module's own text, its type, and the tests that have it.
std::string commentOn(const Parameter& parameter, const Registry& registry) {
    std::vector<std::string> users;
    for (const Test& test : registry.tests) {
        const std::vector<const Parameter*>& taken = test.parameters();
        if (std::find(taken.begin(), taken.end(), &parameter) != taken.end()) {
            users.push_back(test.name().utf8());
        }
    }
    const bool number = parameter.type() == DataType::UINT32();
    std::vector<std::string> phrases = {
        message(number ? "CONFIG_PARAMETER_NUMBER" : "CONFIG_PARAMETER_TEXT")};
    if (parameter.multiValued()) {
        phrases.push_back(message("CONFIG_PARAMETER_SEVERAL"));
    }
    if (!parameter.optional()) {
        phrases.push_back(message("CONFIG_PARAMETER_REQUIRED"));
    }
    if (!users.empty()) {
        phrases.push_back(message("CONFIG_PARAMETER_OF", {{"Tests", listed(users)}}));
    }
    const TeskString described = translation(parameter.name());
    return (described == parameter.name() ? "" : described.utf8() + "\n") + phrasesListed(phrases);
}

ConfigKey parameterKey(const Parameter& parameter, const Registry& registry) {
    const bool number = parameter.type() == DataType::UINT32();
    const std::string& standard = parameter.defaultValue().utf8();
    ConfigKey key{"parameters",
                  parameter.name().utf8(),
                  number ? ConfigKey::Kind::number : ConfigKey::Kind::text,
                  parameter.multiValued(),
                  HIGHEST_NUMBER,
                  commentOn(parameter, registry),
                  tomlText(standard),
                  {}};
    if (number) {
        key.example = standard.empty() ? "0" : standard;
    }
    key.apply = [&parameter](CommandLine& line, const std::string& value) {
        line.settings.push_back({parameter.name(), TeskString(value)});
        return USED;
    };
    return key;
}

// The file that the help page's example of the option names.
std::string exampleFile(const std::string& option) {
    for (const OptionDescription& described : optionDescriptions()) {
        if (option == described.name) {
            const std::string example = described.example;
            const std::size_t value = example.find(option) + option.size() + 1;
            return example.substr(value, example.find(' ', value) - value);
        }
    }
    return option;
}

ConfigKey reportKey(const ReportKind& kind) {
    return {"outputs",
            std::string(kind.option).substr(2), // without the dashes
            ConfigKey::Kind::file,
            false,
            0,
            message("CONFIG_REPORT", {{"Option", kind.option}}),
            tomlText(exampleFile(kind.option)),
            [&kind](CommandLine& line, const std::string& value) {
                line.reports.push_back({&kind, value});
                return USED;
            }};
}

ConfigKey logLevelKey() {
    const auto apply = [](CommandLine& line, const std::string& value) {
        line.logLevel = static_cast<int>(parseUint32(value).value_or(0));
        return USED;
    };
    return {"outputs",
            "log-level",
            ConfigKey::Kind::number,
            false,
            HIGHEST_LOG_LEVEL,
            message("CONFIG_LOG_LEVEL"),
            "1",
            apply};
}

ConfigKey quietKey() {
    const auto apply = [](CommandLine& line, const std::string& value) {
        line.quiet = value == "true";
        return USED;
    };
    return {"console", "quiet", ConfigKey::Kind::toggle, false, 0, message("CONFIG_QUIET"),
            "false",   apply};
}

ConfigKey colourKey() {
    const auto apply = [](CommandLine& line,
                          const std::string& value) -> std::optional<std::string> {
        line.colours = coloursNamed(value);
        return line.colours ? USED : message("CONFIG_NO_COLOR", {{"Text", value}});
    };
    return {"console",        "color", ConfigKey::Kind::text, false, 0, message("CONFIG_COLOR"),
            tomlText("auto"), apply};
}

} // namespace

std::vector<ConfigKey> configKeys(const Registry& registry) {
    std::vector<ConfigKey> keys = {testsKey(registry), languageKey()};
    for (const Parameter& parameter : registry.parameters) {
        keys.push_back(parameterKey(parameter, registry));
    }
    keys.push_back(
        textKey("devices", "filter", "CONFIG_DEVICE_FILTER", "intel", &CommandLine::device));
    keys.push_back(
        fileKey("devices", "file", "CONFIG_DEVICE_FILE", "cards.json", &CommandLine::devicesFile));
    for (const ReportKind& kind : reportKinds()) {
        keys.push_back(reportKey(kind));
    }
    keys.push_back(fileKey("outputs", "log", "CONFIG_LOG", "antenna.log", &CommandLine::logFile));
    keys.push_back(logLevelKey());
    keys.push_back(quietKey());
    keys.push_back(colourKey());
    return keys;
}

} // namespace tesk5
