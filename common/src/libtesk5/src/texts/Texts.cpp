#include <tesk5/Texts.h>

#include <tesk5/ModuleInfo.h>

#include "texts/FrameworkTexts.h"
#include "texts/Languages.h"
#include "texts/TextCatalogue.h"

#include <mrl/System.h>

#include <algorithm>
#include <map>
#include <mutex>
#include <optional>

namespace tesk5 {

namespace {

const std::vector<TextSource>& sources() {
    static const std::vector<TextSource> all = [] {
        const std::filesystem::path folder = mrl::System::executableFolder();
        std::vector<TextSource> found = {
            {textFolders(moduleInfo().name, folder), moduleInfo().builtInTexts}};
        for (const TextPart& part : moduleInfo().sharedTexts) {
            found.push_back({textFolders(part.name, folder), part.builtInTexts});
        }
        found.push_back({textFolders("tesk5", folder), frameworkTexts()});
        return found;
    }();
    return all;
}

// The most specific available tag for `tag`.
std::optional<std::string> availableFor(std::string_view tag,
                                        const std::vector<std::string>& available) {
    for (const std::string& candidate : fallbacksOf(tag)) {
        if (std::find(available.begin(), available.end(), candidate) != available.end()) {
            return candidate;
        }
    }
    return std::nullopt;
}

std::string usersLanguage() {
    const std::vector<std::string> available = availableLanguages();
    for (const std::string& tag : mrl::System::interfaceLanguages()) {
        if (const std::optional<std::string> found = availableFor(tag, available)) {
            return *found;
        }
    }
    return std::string(FALLBACK_LANGUAGE);
}

// The languages read so far by tag. They stay, because texts are handed out by reference.
struct Languages {
    std::mutex mutex;
    std::string chosen; ///< empty for the user's
    std::map<std::string, TextCatalogue> read;
    const std::pair<const std::string, TextCatalogue>* current = nullptr; ///< null until needed

    static Languages& instance() {
        static Languages languages;
        return languages;
    }
};

const std::pair<const std::string, TextCatalogue>& languageInForce() {
    Languages& languages = Languages::instance();
    const std::lock_guard lock(languages.mutex);
    if (languages.current == nullptr) {
        const std::string tag = languages.chosen.empty() ? usersLanguage() : languages.chosen;
        languages.current = &*languages.read.try_emplace(tag, sources(), tag).first;
    }
    return *languages.current;
}

} // namespace

const TeskString& lookUpText(const TeskString& key) {
    return languageInForce().second.find(key);
}

TeskString translation(const TeskString& key) {
    return lookUpText(key);
}

std::string message(const TeskString& key, const Event::Variables& variables) {
    return fillPlaceholders(translation(key).utf8(), variables);
}

std::string message(const Finding& finding) {
    return message(finding.key, finding.variables);
}

std::string message(const Mismatch& reason) {
    return message(reason.key, reason.variables);
}

std::string language() {
    return languageInForce().first;
}

bool setLanguage(std::string_view tag) {
    std::string chosen;
    if (!tag.empty()) {
        const std::optional<std::string> found = availableFor(tag, availableLanguages());
        if (!found) {
            return false;
        }
        chosen = *found;
    }
    Languages& languages = Languages::instance();
    const std::lock_guard lock(languages.mutex);
    languages.chosen = std::move(chosen);
    languages.current = nullptr;
    return true;
}

bool hasLanguage(std::string_view tag) {
    return availableFor(tag, availableLanguages()).has_value();
}

std::vector<std::string> availableLanguages() {
    return languagesOf(sources());
}

std::string fillPlaceholders(const std::string& text, const Event::Variables& variables) {
    std::string filled;
    std::size_t done = 0;
    for (std::size_t open = text.find('{'); open != std::string::npos;
         open = text.find('{', open)) {
        const std::size_t close = text.find('}', open);
        if (close == std::string::npos) {
            break;
        }
        const std::string_view name = std::string_view(text).substr(open + 1, close - open - 1);
        const auto variable =
            std::find_if(variables.begin(), variables.end(),
                         [name](const auto& candidate) { return candidate.first.utf8() == name; });
        if (variable == variables.end()) {
            ++open; // another brace may open inside
            continue;
        }
        filled.append(text, done, open - done);
        // The system's messages end in a line end, which would break the sentence.
        constexpr std::string_view LINE_END = "\r\n";
        std::string value = variable->second.valueString().utf8();
        if (value.ends_with(LINE_END)) {
            value.resize(value.size() - LINE_END.size());
        }
        filled += value;
        done = open = close + 1;
    }
    return filled.append(text, done);
}

} // namespace tesk5
