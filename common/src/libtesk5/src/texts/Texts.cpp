#include <tesk5/Texts.h>

#include <tesk5/ModuleInfo.h>

#include "texts/FrameworkTexts.h"
#include "texts/Languages.h"
#include "texts/TextCatalogue.h"

#include <mrl/System.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <mutex>
#include <optional>

namespace tesk5 {

namespace {

constexpr const char* FALLBACK_LANGUAGE = "en";

const std::vector<TextSource>& sources() {
    static const std::vector<TextSource> all = [] {
        const std::filesystem::path folder = mrl::System::executableFolder();
        return std::vector<TextSource>{
            {textFolders(moduleInfo().name, folder), moduleInfo().builtInTexts},
            {textFolders("tesk5", folder), frameworkTexts()}};
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
    return FALLBACK_LANGUAGE;
}

// The catalogue in force once it is settled, for the many calls that only look.
constinit std::atomic<TextCatalogue*> g_settled{nullptr};

// The languages used so far. Catalogues stay, because texts are handed out by reference.
class UsedLanguages {
public:
    TextCatalogue& current() {
        const std::lock_guard lock(m_mutex);
        TextCatalogue& catalogue = *settled().catalogue;
        g_settled = &catalogue;
        return catalogue;
    }
    std::string tag() {
        const std::lock_guard lock(m_mutex);
        return settled().tag;
    }
    void choose(std::string tag) {
        const std::lock_guard lock(m_mutex);
        m_chosen = std::move(tag);
        m_current = nullptr;
        g_settled = nullptr;
    }

    static UsedLanguages& instance() {
        static UsedLanguages languages;
        return languages;
    }

private:
    struct Language {
        std::string tag;
        std::unique_ptr<TextCatalogue> catalogue;
    };

    Language& settled() {
        if (m_current == nullptr) {
            const std::string tag = m_chosen.empty() ? usersLanguage() : m_chosen;
            const auto known = std::find_if(m_used.begin(), m_used.end(),
                                            [&tag](const auto& used) { return used->tag == tag; });
            m_current = known != m_used.end()
                            ? known->get()
                            : m_used
                                  .emplace_back(std::make_unique<Language>(Language{
                                      tag, std::make_unique<TextCatalogue>(sources(), tag)}))
                                  .get();
        }
        return *m_current;
    }

    std::mutex m_mutex;
    std::string m_chosen;
    std::vector<std::unique_ptr<Language>> m_used;
    Language* m_current = nullptr;
};

} // namespace

TextCatalogue& catalogueInForce() {
    TextCatalogue* const settled = g_settled.load(std::memory_order_acquire);
    return settled != nullptr ? *settled : UsedLanguages::instance().current();
}

const TeskString& textOf(const TeskString& key) {
    return catalogueInForce().textOf(key);
}

std::string message(const TeskString& key, const Event::Variables& variables) {
    return fillPlaceholders(textOf(key).utf8(), variables);
}

std::string language() {
    return UsedLanguages::instance().tag();
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
    UsedLanguages::instance().choose(std::move(chosen));
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
        // The system's own messages end their line; in the middle of a sentence that is noise.
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
