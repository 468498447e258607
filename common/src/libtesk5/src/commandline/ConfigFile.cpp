// The configuration file, read by toml++, which knows the place of every key and value.
#include "commandline/ConfigFile.h"

#include <tesk5/BadInput.h>
#include <tesk5/Language.h>
#include <tesk5/ModuleInfo.h>
#include <tesk5/Texts.h>
#include <tesk5/TomlFile.h>

#include "commandline/ConfigKeys.h"
#include "commandline/TagOptions.h"
#include "run/Plan.h"
#include "texts/SystemReason.h"
#include "texts/UnknownName.h"

#include <mrl/Files.h>
#include <mrl/System.h>
#include <mrl/Unicode.h>

// Only the parser is used.
#define TOML_ENABLE_FORMATTERS 0
#define TOML_ENABLE_WINDOWS_COMPAT 0
// A file such as "[!]" fails an assertion of the parser; without the assertion the parser refuses
// it.
#define TOML_ASSERT(expression) static_assert(true)
#include <toml++/toml.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <set>

namespace tesk5 {

namespace {

// Many times the size of the template with every key.
constexpr std::size_t LARGEST_FILE = 0x10000;

constexpr const char* PARAMETERS = "parameters";

// The parser recurses once for each part of a key (a.b.c) and has no limit of its own: a long
// enough key would exhaust the stack.
constexpr mrl::Uint32 MOST_DOTS = 2000;

// A mistake in the file, and its place.
struct Problem {
    toml::source_position place;
    std::string reason;
};

[[noreturn]] void refuse(const std::string& file, const Problem& problem) {
    throw BadInput{message("CONFIG_UNUSABLE_AT", {{"File", file},
                                                  {"Line", problem.place.line},
                                                  {"Column", problem.place.column},
                                                  {"Reason", problem.reason}})};
}

// Some shells write redirected output in UTF-16, and users redirect the template into a file.
std::string inUtf8(const std::string& bytes) {
    if (!bytes.starts_with("\xFF\xFE")) {
        return bytes;
    }
    mrl::CharString units(bytes.size() / 2 - 1, mrl::Char());
    for (std::size_t i = 0; i < units.size(); ++i) {
        const auto low = static_cast<unsigned char>(bytes[2 * i + 2]);
        const auto high = static_cast<unsigned char>(bytes[2 * i + 3]);
        units[i] = static_cast<mrl::Char>(low | high << 8U);
    }
    return mrl::toUtf8(units);
}

std::string_view trimmed(std::string_view text) {
    constexpr const char* BLANKS = " \t\r";
    const std::size_t begin = std::min(text.find_first_not_of(BLANKS), text.size());
    return text.substr(begin, text.find_last_not_of(BLANKS) + 1 - begin);
}

// What to write when the line has a text without quotes for its value, the commonest mistake; the
// parser speaks of types then. Nothing for any other line.
std::optional<std::string> textWithoutQuotes(std::string_view text, mrl::Uint32 number) {
    for (mrl::Uint32 line = 1; line < number && !text.empty(); ++line) {
        text.remove_prefix(std::min(text.find('\n'), text.size() - 1) + 1);
    }
    text = text.substr(0, text.find('\n'));
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos) {
        return std::nullopt;
    }
    const std::string_view value = trimmed(text.substr(equals + 1, text.find('#') - equals - 1));
    const auto isPlain = [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return std::isalpha(byte) != 0 || byte >= 0x80;
    };
    if (value.empty() || !isPlain(value.front()) || value.find('"') != std::string_view::npos) {
        return std::nullopt;
    }
    return message(
        "CONFIG_TEXT_WITHOUT_QUOTES",
        {{"Key", std::string(trimmed(text.substr(0, equals)))}, {"Text", std::string(value)}});
}

std::optional<Problem> tooManyDots(const std::string& text) {
    toml::source_position place{1, 1};
    mrl::Uint32 dots = 0;
    for (const char letter : text) {
        if (letter == '.' && ++dots > MOST_DOTS) {
            return Problem{place, message("CONFIG_TOO_MANY_DOTS", {{"Most", MOST_DOTS}})};
        }
        place = letter == '\n' ? toml::source_position{place.line + 1, 1}
                               : toml::source_position{place.line, place.column + 1};
    }
    return std::nullopt;
}

struct ParsedFile {
    std::string bytes;
    toml::table root;
};

ParsedFile parsed(const std::string& file) {
    std::string text;
    try {
        std::string bytes = mrl::readWholeFile(mrl::System::path(file), LARGEST_FILE);
        text = inUtf8(bytes);
        if (const std::optional<Problem> problem = tooManyDots(text)) {
            refuse(file, *problem);
        }
        return {std::move(bytes), toml::parse(text)};
    } catch (const mrl::FileFailure& failure) {
        throw BadInput{
            message("CONFIG_UNREADABLE", {{"File", file}, {"Reason", fileReason(failure).text()}})};
    } catch (const toml::parse_error& error) {
        const toml::source_position place = error.source().begin;
        refuse(file,
               {place,
                textWithoutQuotes(text, place.line).value_or(std::string(error.description()))});
    }
}

// The kind of a value in words that fit the file, not the parser.
std::string kindOf(const toml::node& node) {
    switch (node.type()) {
    case toml::node_type::table:
        return message("CONFIG_IS_TABLE");
    case toml::node_type::array:
        return message("CONFIG_IS_LIST");
    case toml::node_type::string:
        return message("CONFIG_IS_TEXT");
    case toml::node_type::integer:
        return std::to_string(node.as_integer()->get());
    case toml::node_type::floating_point:
        return message("CONFIG_IS_FRACTION");
    case toml::node_type::boolean:
        return message("CONFIG_IS_SWITCH");
    default:
        return message("CONFIG_IS_TIME");
    }
}

constexpr UnknownName UNKNOWN_KEY = {"CONFIG_UNKNOWN_KEY", "CONFIG_UNKNOWN_KEY_NEAREST"};
constexpr UnknownName UNKNOWN_KEY_IN_TABLE = {"CONFIG_UNKNOWN_KEY_IN_TABLE",
                                              "CONFIG_UNKNOWN_KEY_IN_TABLE_NEAREST"};

class ConfigReader {
public:
    ConfigReader(const CommandLine& given, const Registry& registry)
        : m_given(given), m_folder(mrl::System::path(*given.configFile).parent_path()),
          m_keys(configKeys(registry)) {
        for (const ConfigKey& key : m_keys) {
            m_tables.insert(key.table);
        }
        m_tables.erase("");
    }

    /// The command line with the values of the file that it does not have itself.
    CommandLine read(const toml::table& root) {
        CommandLine line = m_given;
        for (const auto& [name, node] : root) {
            if (isOfModule(name.str())) {
                continue;
            }
            if (m_tables.contains(std::string(name.str()))) {
                readTable(std::string(name.str()), node, line);
            } else {
                readKey("", name, node, line);
            }
        }
        for (const ConfigTable& table : moduleInfo().configTables) {
            if (const toml::node* const node = root.get(table.name)) {
                readValue(*keyNamed(PARAMETERS, table.parameter), *node, *m_given.configFile, line);
            }
        }
        return line;
    }

    /// The first mistake in the file; nothing when there is none.
    std::optional<Problem> firstProblem() const {
        const auto earlier = [](const Problem& a, const Problem& b) { return a.place < b.place; };
        const auto first = std::min_element(m_problems.begin(), m_problems.end(), earlier);
        return first == m_problems.end() ? std::nullopt : std::optional(*first);
    }

private:
    static bool isOfModule(std::string_view table) {
        const auto tables = moduleInfo().configTables;
        return std::any_of(tables.begin(), tables.end(),
                           [table](const ConfigTable& other) { return other.name == table; });
    }

    std::optional<ConfigKey> keyNamed(std::string_view table, std::string_view name) const {
        const auto key = std::find_if(m_keys.begin(), m_keys.end(), [&](const ConfigKey& known) {
            return known.table == table && known.name == name;
        });
        return key != m_keys.end() ? std::optional(*key) : tagKey(table, std::string(name));
    }

    void readTable(const std::string& table, const toml::node& node, CommandLine& line) {
        const toml::table* const entries = node.as_table();
        if (entries == nullptr) {
            m_problems.push_back(
                {node.source().begin,
                 message("CONFIG_NO_TABLE", {{"Name", table}, {"Found", kindOf(node)}})});
            return;
        }
        for (const auto& [name, entry] : *entries) {
            readKey(table, name, entry, line);
        }
    }

    void readKey(const std::string& table, const toml::key& name, const toml::node& node,
                 CommandLine& line) {
        const std::optional<ConfigKey> key = keyNamed(table, name.str());
        if (!key) {
            m_problems.push_back(
                {name.source().begin, aboutUnknownKey(table, std::string(name.str()))});
            return;
        }
        const toml::array* const list = node.as_array();
        if (list == nullptr || !key->several) {
            readValue(*key, node, line);
            return;
        }
        for (const toml::node& item : *list) {
            readValue(*key, item, line);
        }
    }

    void readValue(const ConfigKey& key, const toml::node& node, CommandLine& line) {
        const std::optional<std::string> value = valueOf(key, node);
        if (!value) {
            m_problems.push_back(
                {node.source().begin,
                 message(wantedOf(key),
                         {{"Name", key.name}, {"Highest", key.highest}, {"Found", kindOf(node)}})});
            return;
        }
        // The empty text is a value of parameters alone; it means "not set".
        if (value->find('\0') != std::string::npos || (value->empty() && key.table != PARAMETERS)) {
            m_problems.push_back({node.source().begin, message("CONFIG_USELESS_TEXT")});
            return;
        }
        const bool isFile = key.kind == ConfigKey::Kind::file && !value->empty();
        readValue(key, node, isFile ? besideTheFile(*value) : *value, line);
    }

    void readValue(const ConfigKey& key, const toml::node& node, const std::string& value,
                   CommandLine& line) {
        CommandLine& target = isGiven(key) ? m_unused : line;
        if (const auto reason = key.apply(target, value)) {
            m_problems.push_back({node.source().begin, *reason});
        }
    }

    /// Whether the command line has the value already.
    bool isGiven(const ConfigKey& key) const {
        if (key.table == TAGS_TABLE) {
            return m_given.tags.find(key.name) != nullptr;
        }
        if (key.table == TAG_PATTERNS_TABLE) {
            return false;
        }
        if (key.option.empty()) {
            return !m_given.tests.empty();
        }
        if (key.table != PARAMETERS) {
            return m_given.given.contains(key.option);
        }
        return std::any_of(m_given.settings.begin(), m_given.settings.end(),
                           [&key](const Setting& other) { return other.name.utf8() == key.name; });
    }

    /// Key of the message about a value of another kind.
    static const char* wantedOf(const ConfigKey& key) {
        switch (key.kind) {
        case ConfigKey::Kind::number:
            return "CONFIG_NO_NUMBER";
        case ConfigKey::Kind::decimal:
            return "CONFIG_NO_DECIMAL";
        case ConfigKey::Kind::toggle:
            return "CONFIG_NO_SWITCH";
        default:
            return key.several ? "CONFIG_NO_TEXTS" : "CONFIG_NO_TEXT";
        }
    }

    static std::optional<std::string> valueOf(const ConfigKey& key, const toml::node& node) {
        if (key.kind == ConfigKey::Kind::number) {
            return numberOf(key, node);
        }
        if (key.kind == ConfigKey::Kind::decimal) {
            return decimalOf(node);
        }
        if (key.kind != ConfigKey::Kind::toggle) {
            return node.value_exact<std::string>();
        }
        const std::optional<bool> on = node.value_exact<bool>();
        return on ? std::optional<std::string>(*on ? "true" : "false") : std::nullopt;
    }

    static std::optional<std::string> numberOf(const ConfigKey& key, const toml::node& node) {
        const toml::value<std::int64_t>* const number = node.as_integer();
        if (number == nullptr || number->get() < 0 || number->get() > key.highest) {
            return std::nullopt;
        }
        return std::to_string(number->get());
    }

    // As the command line would have it: the shortest text of the same number.
    static std::optional<std::string> decimalOf(const toml::node& node) {
        if (const toml::value<std::int64_t>* const whole = node.as_integer()) {
            return std::to_string(whole->get());
        }
        const toml::value<double>* const number = node.as_floating_point();
        if (number == nullptr || !std::isfinite(number->get())) {
            return std::nullopt;
        }
        constexpr std::size_t LONGEST = 400; // of a double without an exponent
        std::array<char, LONGEST> text;
        const auto [end, failure] = std::to_chars(text.data(), text.data() + text.size(),
                                                  number->get(), std::chars_format::fixed);
        return failure == std::errc() ? std::optional(std::string(text.data(), end)) : std::nullopt;
    }

    // Paths count from the configuration file's folder, so that the current directory does not
    // matter.
    std::string besideTheFile(const std::string& path) const {
        const std::u8string whole =
            (m_folder / mrl::System::path(path)).lexically_normal().u8string();
        return {whole.begin(), whole.end()};
    }

    // A key that is known in another table is most likely under the wrong heading.
    std::string aboutUnknownKey(const std::string& table, const std::string& name) const {
        std::vector<std::string> names;
        for (const ConfigKey& key : m_keys) {
            if (key.name == name) {
                return key.table.empty()
                           ? message("CONFIG_KEY_OF_NO_TABLE", {{"Name", name}, {"Table", table}})
                           : message("CONFIG_KEY_OF_TABLE", {{"Name", name}, {"Table", key.table}});
            }
            if (key.table == table) {
                names.push_back(key.name);
            }
        }
        if (table.empty()) {
            names.insert(names.end(), m_tables.begin(), m_tables.end());
        }
        return table.empty() ? aboutUnknown(UNKNOWN_KEY, name, names)
                             : aboutUnknown(UNKNOWN_KEY_IN_TABLE, name, names, {{"Table", table}});
    }

    const CommandLine& m_given;
    CommandLine m_unused; ///< takes the values that the command line has already
    std::filesystem::path m_folder;
    std::vector<ConfigKey> m_keys;
    std::set<std::string> m_tables;
    std::vector<Problem> m_problems;
};

// Dates and times are none of JSON's types: null.
mrl::Json jsonOf(const toml::node& node) {
    switch (node.type()) {
    case toml::node_type::table: {
        mrl::Json object = mrl::Json::object();
        for (const auto& [name, entry] : *node.as_table()) {
            object[std::string(name.str())] = jsonOf(entry);
        }
        return object;
    }
    case toml::node_type::array: {
        mrl::Json list = mrl::Json::array();
        for (const toml::node& item : *node.as_array()) {
            list.push_back(jsonOf(item));
        }
        return list;
    }
    case toml::node_type::string:
        return node.as_string()->get();
    case toml::node_type::integer:
        return node.as_integer()->get();
    case toml::node_type::floating_point:
        return node.as_floating_point()->get();
    case toml::node_type::boolean:
        return node.as_boolean()->get();
    default:
        return nullptr;
    }
}

// Comes before every other message about the file, so that each is in its language.
void useLanguageOf(const toml::table& root) {
    const toml::value<std::string>* const tag = root["language"].as_string();
    if (tag != nullptr) {
        Language::current().set(tag->get()); // an unknown one is refused when the keys are read
    }
}

// The parameters of the tests that `line` runs, or of its command of the module.
std::set<TeskString> parametersTakenBy(const CommandLine& line, const Registry& registry) {
    std::vector<const Parameter*> taken;
    if (line.moduleCommand != nullptr) {
        taken = parametersOf(*line.moduleCommand, registry);
    } else {
        for (const Test* test : chooseTests(registry, line.tests)) {
            taken.insert(taken.end(), test->parameters().begin(), test->parameters().end());
        }
    }
    std::set<TeskString> names;
    for (const Parameter* parameter : taken) {
        names.insert(parameter->name());
    }
    return names;
}

} // namespace

TomlFile readTomlFile(const std::string& path) {
    ParsedFile file = parsed(path);
    return {.bytes = std::move(file.bytes), .root = jsonOf(file.root)};
}

CommandLine withConfiguration(const CommandLine& line, const Registry& registry) {
    if (!line.configFile) {
        return line;
    }
    const toml::table root = parsed(*line.configFile).root;
    if (!line.language) {
        useLanguageOf(root);
    }
    ConfigReader reader(line, registry);
    CommandLine whole = reader.read(root);
    if (const std::optional<Problem> problem = reader.firstProblem()) {
        refuse(*line.configFile, *problem);
    }
    const std::set<TeskString> taken = parametersTakenBy(whole, registry);
    const auto fromFile = whole.settings.begin() + std::ssize(line.settings);
    whole.settings.erase(
        std::remove_if(fromFile, whole.settings.end(),
                       [&taken](const Setting& setting) { return !taken.contains(setting.name); }),
        whole.settings.end());
    return whole;
}

} // namespace tesk5
