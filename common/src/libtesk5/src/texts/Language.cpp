#include <tesk5/Language.h>

#include <tesk5/ModuleInfo.h>

#include "texts/FrameworkTexts.h"
#include "texts/LanguageTags.h"
#include "texts/TextCatalogue.h"

#include <mrl/System.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace tesk5 {

namespace {

const std::vector<TextSource>& sources() {
    static const std::vector<TextSource> all = [] {
        const std::vector<std::filesystem::path> resources =
            mrl::System::resourceFolders(moduleInfo().name);
        std::vector<TextSource> found = {
            {textFolders(moduleInfo().name, resources), moduleInfo().builtInTexts}};
        for (const TextPart& part : moduleInfo().sharedTexts) {
            found.push_back({textFolders(part.name, resources), part.builtInTexts});
        }
        found.push_back({textFolders("tesk5", resources), frameworkTexts()});
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
    const std::vector<std::string> available = Language::available();
    for (const std::string& tag : mrl::System::interfaceLanguages()) {
        if (const std::optional<std::string> found = availableFor(tag, available)) {
            return *found;
        }
    }
    return std::string(FALLBACK_LANGUAGE);
}

constinit thread_local Language* t_current = nullptr;

} // namespace

Language::Language() = default;
Language::~Language() = default;

Language& Language::ofProcess() {
    // Never destroyed: its texts are handed out by reference, and any thread may ask for them.
    static auto* const language = new Language; // NOLINT(cppcoreguidelines-owning-memory)
    return *language;
}

Language& Language::current() {
    return t_current != nullptr ? *t_current : ofProcess();
}

Language::Scope::Scope(Language& language) : m_outer(std::exchange(t_current, &language)) {}

Language::Scope::~Scope() {
    t_current = m_outer;
}

bool Language::set(std::string_view tag) {
    std::string chosen;
    if (!tag.empty()) {
        const std::optional<std::string> found = availableFor(tag, available());
        if (!found) {
            return false;
        }
        chosen = *found;
    }
    const std::lock_guard lock(m_mutex);
    m_chosen = std::move(chosen);
    m_current = nullptr;
    return true;
}

const Language::Texts& Language::inForce() {
    const std::lock_guard lock(m_mutex);
    if (m_current == nullptr) {
        const std::string tag = m_chosen.empty() ? usersLanguage() : m_chosen;
        const auto place = m_read.try_emplace(tag).first;
        if (place->second == nullptr) {
            place->second = std::make_unique<TextCatalogue>(sources(), tag);
        }
        m_current = &*place;
    }
    return *m_current;
}

const std::string& Language::tag() {
    return inForce().first;
}

const TeskString& Language::find(const TeskString& key) {
    return inForce().second->find(key);
}

bool Language::hasTextsFor(std::string_view tag) {
    return availableFor(tag, available()).has_value();
}

std::vector<std::string> Language::available() {
    return languagesOf(sources());
}

} // namespace tesk5
