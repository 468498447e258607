#include "commandline/TagOptions.h"

#include <tesk5/BadInput.h>
#include <tesk5/Texts.h>

#include <algorithm>

namespace tesk5 {

namespace {

using Reason = std::optional<std::string>;

void refuseFor(const Reason& reason) {
    if (reason) {
        throw BadInput{*reason};
    }
}

// \return why the tag cannot be added; nothing when it was
Reason addValue(CommandLine& line, const std::string& name, const std::string& value) {
    if (line.tags.find(name) != nullptr) {
        return message("INPUT_TAG_TWICE", {{"Name", name}});
    }
    Tag tag{.name = name, .value = withoutLineEnd(value)};
    Reason reason = whyNoTagName(name);
    if (!reason) {
        reason = whyNoTagValue(tag);
    }
    line.tags.given.push_back(std::move(tag));
    return reason;
}

// The same for a pattern.
Reason addPattern(CommandLine& line, const std::string& name, const std::string& pattern) {
    if (Reason reason = whyNoTagName(name)) {
        return reason;
    }
    try {
        line.tags.patterns.emplace_back(name, pattern);
        return std::nullopt;
    } catch (const BadInput& refused) {
        return refused.line;
    }
}

// Adds the names between the commas of `text`, each once.
void addNames(std::vector<std::string>& names, const std::string& text) {
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t end = std::min(text.find(',', begin), text.size());
        const std::string name = text.substr(begin, end - begin);
        refuseFor(whyNoTagName(name));
        if (std::find(names.begin(), names.end(), name) == names.end()) {
            names.push_back(name);
        }
        begin = end + 1;
    }
}

ConfigKey textKey(const char* table, const std::string& name) {
    return {.table = table,
            .name = name,
            .option = {},
            .kind = ConfigKey::Kind::text,
            .comment = {},
            .example = {},
            .apply = {},
            .several = false,
            .highest = 0};
}

} // namespace

bool addTag(CommandLine& line, std::string_view /*option*/, const std::string& nameAndValue) {
    const std::size_t equals = nameAndValue.find('=');
    if (equals == std::string::npos || equals == 0) {
        return false;
    }
    refuseFor(addValue(line, nameAndValue.substr(0, equals), nameAndValue.substr(equals + 1)));
    return true;
}

bool addTagPrompts(CommandLine& line, std::string_view /*option*/, const std::string& names) {
    addNames(line.tags.prompted, names);
    return true;
}

bool addRequiredTags(CommandLine& line, std::string_view /*option*/, const std::string& names) {
    addNames(line.tags.required, names);
    return true;
}

std::optional<ConfigKey> tagKey(std::string_view table, const std::string& name) {
    if (table == TAGS_TABLE) {
        ConfigKey key = textKey(TAGS_TABLE, name);
        key.option = "--tag";
        key.apply = [name](CommandLine& line, const std::string& value) {
            return addValue(line, name, value);
        };
        return key;
    }
    if (table == TAG_PATTERNS_TABLE) {
        ConfigKey key = textKey(TAG_PATTERNS_TABLE, name);
        key.apply = [name](CommandLine& line, const std::string& value) {
            return addPattern(line, name, value);
        };
        return key;
    }
    return std::nullopt;
}

std::vector<ConfigKey> tagKeys() {
    std::vector<ConfigKey> keys;
    const auto add = [&keys](const char* table, const std::string& name, std::string comment,
                             const std::string& example) {
        ConfigKey key = *tagKey(table, name);
        key.comment = std::move(comment);
        key.example = tomlText(example);
        keys.push_back(std::move(key));
    };
    for (const KnownTag& tag : knownTags()) {
        add(TAGS_TABLE, tag.name, message(tag.meaning), tag.example);
    }
    add(TAG_PATTERNS_TABLE, "serial", message("CONFIG_TAG_PATTERN"), "[A-Z][0-9]{4}");
    return keys;
}

} // namespace tesk5
