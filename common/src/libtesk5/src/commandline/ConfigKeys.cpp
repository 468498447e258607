#include "commandline/ConfigKeys.h"

#include <tesk5/BadInput.h>
#include <tesk5/Texts.h>

#include "commandline/Commands.h"
#include "commandline/TagOptions.h"
#include "texts/Lists.h"
#include "texts/ParameterText.h"
#include "texts/UnknownName.h"

#include <algorithm>
#include <cstdio>

namespace tesk5 {

namespace {

constexpr mrl::Uint32 HIGHEST_NUMBER = 0xFFFFFFFF;
const std::optional<std::string> USED;

using Kind = ConfigKey::Kind;

// A key that stands for an option.
struct OptionKey {
    const char* table;
    const char* name;
    const char* option;
    Kind kind;
    const char* comment;           // key of a text
    const char* example;           // in TOML's notation
    const char* refusal = nullptr; // key of the text about a value that the option does not take
};
constexpr OptionKey LANGUAGE_KEY = {"",
                                    "language",
                                    "--language",
                                    Kind::text,
                                    "CONFIG_LANGUAGE",
                                    "\"en\"",
                                    "INPUT_UNKNOWN_LANGUAGE"};
constexpr OptionKey requiredTagsKey = {"",         "require-tags",        "--require-tags",
                                       Kind::text, "CONFIG_REQUIRE_TAGS", "[\"serial\"]"};
constexpr OptionKey promptedTagsKey = {"",         "tag-prompt",        "--tag-prompt",
                                       Kind::text, "CONFIG_TAG_PROMPT", "[\"serial\"]"};
constexpr OptionKey optionKeys[] = {
    {"devices", "filter", "--device", Kind::text, "CONFIG_DEVICE_FILTER", "\"intel\""},
    {"devices", "file", "--devices", Kind::file, "CONFIG_DEVICE_FILE", "\"cards.json\""},
    {"outputs", "json", "--json", Kind::file, "CONFIG_REPORT", "\"report.json\""},
    {"outputs", "junit", "--junit", Kind::file, "CONFIG_REPORT", "\"report.xml\""},
    {"outputs", "html", "--html", Kind::file, "CONFIG_REPORT", "\"report.html\""},
    {"outputs", "ocp", "--ocp", Kind::file, "CONFIG_REPORT", "\"run.jsonl\""},
    {"outputs", "wsjf", "--wsjf", Kind::file, "CONFIG_REPORT", "\"unit.json\""},
    {"outputs", "openhtf", "--openhtf", Kind::file, "CONFIG_REPORT", "\"record.json\""},
    {"outputs", "journal", "--journal", Kind::file, "CONFIG_JOURNAL", "\"line.jsonl\""},
    {"outputs", "full-log", "--full-log", Kind::toggle, "CONFIG_FULL_LOG", "false"},
    {"outputs", "no-identity", "--no-identity", Kind::toggle, "CONFIG_NO_IDENTITY", "false"},
    {"outputs", "log", "--log", Kind::file, "CONFIG_LOG", "\"antenna.log\""},
    {"outputs", "log-level", "--log-level", Kind::number, "CONFIG_LOG_LEVEL", "1"},
    {"console", "quiet", "--quiet", Kind::toggle, "CONFIG_QUIET", "false"},
    {"console", "color", "--color", Kind::text, "CONFIG_COLOR", "\"auto\"", "CONFIG_NO_COLOR"},
};

ConfigKey keyOf(const OptionKey& key) {
    const auto apply = [&key](CommandLine& line, const std::string& value) {
        try {
            const bool taken = optionNamed(key.option)->apply(line, key.option, value);
            return taken ? USED : refusalOf(key.refusal, value);
        } catch (const BadInput& refused) {
            return std::optional(refused.line);
        }
    };
    return {key.table,
            key.name,
            key.option,
            key.kind,
            message(key.comment, {{"Option", key.option}}),
            key.example,
            apply,
            false,
            HIGHEST_LOG_LEVEL};
}

// The example lists every registered test: deleting names is easier than finding them.
ConfigKey testsKey(const Registry& registry) {
    const std::vector<std::string> names = registry.testNames();
    std::string example;
    for (const std::string& name : names) {
        example += (example.empty() ? "" : ", ") + tomlText(name);
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
    return {"", "tests", "", Kind::text, message("CONFIG_TESTS"), "[" + example + "]", apply, true};
}

// What kind of value a parameter takes.
std::string kindText(const Parameter& parameter) {
    if (parameter.ranged()) {
        return message(parameter.type() == DataType::INTEGER() ? "CONFIG_PARAMETER_WHOLE"
                                                               : "CONFIG_PARAMETER_DECIMAL",
                       {{"Range", domainText(parameter)}});
    }
    if (parameter.type() == DataType::CHOICE()) {
        return message("CONFIG_PARAMETER_CHOICE", {{"Choices", domainText(parameter)}});
    }
    return message(parameter.type() == DataType::UINT32() ? "CONFIG_PARAMETER_NUMBER"
                                                          : "CONFIG_PARAMETER_TEXT");
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
    std::vector<std::string> phrases = {kindText(parameter)};
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

ConfigKey::Kind kindOf(const Parameter& parameter) {
    if (parameter.type() == DataType::UINT32()) {
        return Kind::number;
    }
    if (parameter.namesFile()) {
        return Kind::file;
    }
    return parameter.ranged() ? Kind::decimal : Kind::text;
}

// A value in TOML's notation: the default, or else one that the parameter takes.
std::string exampleFor(const Parameter& parameter) {
    const std::string& standard = parameter.defaultValue().utf8();
    switch (kindOf(parameter)) {
    case Kind::number:
        return standard.empty() ? "0" : standard;
    case Kind::decimal:
        return standard.empty() ? parameter.range().lowest.text() : standard;
    default:
        return tomlText(standard.empty() && !parameter.choices().empty()
                            ? parameter.choices().front().utf8()
                            : standard);
    }
}

ConfigKey parameterKey(const Parameter& parameter, const Registry& registry) {
    // Texts and unsigned numbers are refused once the tests that run are known.
    const bool checked = parameter.ranged() || parameter.type() == DataType::CHOICE();
    const auto apply = [&parameter, checked](CommandLine& line, const std::string& value) {
        const TeskString text(value);
        if (checked && !parameter.accepts(text)) {
            return std::optional(refusalText(parameter, text));
        }
        line.settings.push_back({parameter.name(), text, true});
        return USED;
    };
    return {"parameters",
            parameter.name().utf8(),
            "--set",
            kindOf(parameter),
            commentOn(parameter, registry),
            exampleFor(parameter),
            apply,
            parameter.multiValued(),
            HIGHEST_NUMBER};
}

bool isBare(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= '0' && letter <= '9') || letter == '_' || letter == '-';
}

} // namespace

std::vector<ConfigKey> configKeys(const Registry& registry) {
    std::vector<ConfigKey> keys = {testsKey(registry), keyOf(LANGUAGE_KEY)};
    for (const OptionKey* names : {&requiredTagsKey, &promptedTagsKey}) {
        keys.push_back(keyOf(*names));
        keys.back().several = true;
    }
    for (const Parameter& parameter : registry.parameters) {
        keys.push_back(parameterKey(parameter, registry));
    }
    for (const OptionKey& key : optionKeys) {
        keys.push_back(keyOf(key));
    }
    for (ConfigKey& key : tagKeys()) {
        keys.push_back(std::move(key));
    }
    return keys;
}

std::string tomlText(const std::string& text) {
    constexpr unsigned char FIRST_PRINTABLE = 0x20;
    constexpr unsigned char DELETE = 0x7F;
    std::string result = "\"";
    for (const char letter : text) {
        const auto code = static_cast<unsigned char>(letter);
        if (code < FIRST_PRINTABLE || code == DELETE) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04X", static_cast<unsigned>(code));
            result += escape;
            continue;
        }
        if (letter == '"' || letter == '\\') {
            result += '\\';
        }
        result += letter;
    }
    return result + "\"";
}

std::string tomlKey(const std::string& name) {
    return !name.empty() && std::all_of(name.begin(), name.end(), isBare) ? name : tomlText(name);
}

} // namespace tesk5
