#include "texts/TextCatalogue.h"

#include "texts/JsonFile.h"
#include "texts/LanguageTags.h"

#include <mrl/Files.h>
#include <mrl/LoggerStream.h>
#include <mrl/System.h>

#include <algorithm>
#include <set>

namespace tesk5 {

namespace {

void logUnusable(const std::string& what, const UnusableInput& failure) {
    constexpr int PRIORITY = 4;
    mrl::Logger& logger = mrl::LogFactory::createLogger("tesk5.texts");
    mrl::LoggerStream(logger.admitting(PRIORITY), PRIORITY)
        << "The texts of " << what << " are not used: " << failure.what();
}

// Refuses everything but an object whose members are texts.
const mrl::Json& checkedTexts(const mrl::Json& texts) {
    if (!texts.is_object()) {
        throw UnusableInput(Message("INPUT_TEXTS_NO_OBJECT"));
    }
    for (const auto& [key, text] : texts.items()) {
        if (!text.is_string()) {
            throw UnusableInput(Message("INPUT_TEXTS_NO_STRING", {{"Key", key}}));
        }
    }
    return texts;
}

// The texts of the first usable file; an empty object when there is none.
mrl::Json firstUsable(const std::vector<std::filesystem::path>& folders,
                      const std::string& language) {
    for (const std::filesystem::path& folder : folders) {
        const std::filesystem::path file = folder / mrl::System::path(language + ".json");
        if (mrl::fileKind(file) != mrl::FileKind::ordinary) {
            continue;
        }
        try {
            return checkedTexts(readJsonFile(file));
        } catch (const UnusableInput& failure) {
            const std::u8string name = file.u8string();
            logUnusable(std::string(name.begin(), name.end()), failure);
        }
    }
    return mrl::Json::object();
}

mrl::Json builtInTexts(std::string_view builtIn) {
    try {
        return checkedTexts(parseJson(builtIn));
    } catch (const UnusableInput& failure) {
        logUnusable("the program itself", failure);
        return mrl::Json::object();
    }
}

} // namespace

TextCatalogue::TextCatalogue(const std::vector<TextSource>& sources, std::string_view language) {
    const std::string ending = "@" + std::string(mrl::System::name());
    const auto add = [this, &ending](const mrl::Json& texts) {
        for (const auto& [key, text] : texts.items()) {
            if (key.ends_with(ending)) {
                m_texts.try_emplace(key.substr(0, key.size() - ending.size()),
                                    text.get_ref<const std::string&>());
            }
        }
        for (const auto& [key, text] : texts.items()) {
            m_texts.try_emplace(key, text.get_ref<const std::string&>());
        }
    };
    std::vector<std::string> tags = fallbacksOf(language);
    if (std::find(tags.begin(), tags.end(), FALLBACK_LANGUAGE) == tags.end()) {
        tags.emplace_back(FALLBACK_LANGUAGE);
    }
    for (const std::string& tag : tags) {
        for (const TextSource& source : sources) {
            add(firstUsable(source.folders, tag));
        }
    }
    for (const TextSource& source : sources) {
        add(builtInTexts(source.builtIn));
    }
}

const TeskString& TextCatalogue::find(const TeskString& key) const {
    const auto found = m_texts.find(key.utf8());
    return found != m_texts.end() ? found->second : key;
}

std::vector<std::filesystem::path>
textFolders(std::string_view part, const std::vector<std::filesystem::path>& resources) {
    std::vector<std::filesystem::path> folders;
    folders.reserve(resources.size());
    for (const std::filesystem::path& folder : resources) {
        folders.push_back(folder / mrl::System::path(part) / "texts");
    }
    return folders;
}

std::vector<std::string> languagesOf(const std::vector<TextSource>& sources) {
    std::set<std::string> languages = {std::string(FALLBACK_LANGUAGE)};
    for (const TextSource& source : sources) {
        for (const std::filesystem::path& folder : source.folders) {
            std::error_code failure;
            for (std::filesystem::directory_iterator entry(folder, failure), end;
                 !failure && entry != end; entry.increment(failure)) {
                const std::u8string stem = entry->path().stem().u8string();
                const std::string tag(stem.begin(), stem.end());
                if (entry->path().extension() == ".json" && canonicalTag(tag) == tag) {
                    languages.insert(tag);
                }
            }
        }
    }
    return {languages.begin(), languages.end()};
}

} // namespace tesk5
