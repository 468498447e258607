#include "TextCatalogue.h"

#include "JsonFile.h"
#include "Languages.h"

#include <mrl/LoggerStream.h>
#include <mrl/System.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <set>

namespace tesk5 {

namespace {

constexpr int PRIORITY = 4;
constexpr std::string_view FALLBACK_LANGUAGE = "en";

using Texts = std::map<TeskString, CatalogueText>;

Texts textsOf(const Json& json, const TextCatalogue* catalogue) {
    if (!json.is_object()) {
        throw JsonFailure(Message("INPUT_TEXTS_NO_OBJECT"));
    }
    Texts texts;
    for (const auto& [key, text] : json.items()) {
        if (!text.is_string()) {
            throw JsonFailure(Message("INPUT_TEXTS_NO_STRING", {{"Key", key}}));
        }
        texts.emplace(TeskString(key),
                      CatalogueText{TeskString(text.get<std::string>()), catalogue});
    }
    return texts;
}

void tellUnusable(const std::string& what, const JsonFailure& failure) {
    mrl::Logger& logger = mrl::LogFactory::createLogger("tesk5.texts");
    mrl::LoggerStream(logger.admitting(PRIORITY), PRIORITY)
        << "The texts of " << what << " are not used: " << failure.what();
}

Texts firstUsable(const std::vector<std::filesystem::path>& folders, std::string_view language,
                  const TextCatalogue* catalogue) {
    for (const std::filesystem::path& folder : folders) {
        const std::filesystem::path file =
            folder / mrl::System::path(std::string(language) + ".json");
        if (!isFile(file)) {
            continue;
        }
        try {
            return textsOf(readJsonFile(file), catalogue);
        } catch (const JsonFailure& failure) {
            const std::u8string name = file.u8string();
            tellUnusable(std::string(name.begin(), name.end()), failure);
        }
    }
    return {};
}

Texts builtInTexts(std::string_view builtIn, const TextCatalogue* catalogue) {
    try {
        return textsOf(parseJson(std::string(builtIn)), catalogue);
    } catch (const JsonFailure& failure) {
        tellUnusable("the program itself", failure);
        return {};
    }
}

} // namespace

TextCatalogue::TextCatalogue(const std::vector<TextSource>& sources, std::string_view language) {
    // merge() keeps what is there already: the nearer source wins.
    std::vector<std::string> languages = fallbacksOf(language);
    if (std::find(languages.begin(), languages.end(), FALLBACK_LANGUAGE) == languages.end()) {
        languages.emplace_back(FALLBACK_LANGUAGE);
    }
    for (const std::string& tag : languages) {
        for (const TextSource& source : sources) {
            m_texts.merge(firstUsable(source.folders, tag, this));
        }
    }
    for (const TextSource& source : sources) {
        m_texts.merge(builtInTexts(source.builtIn, this));
    }
}

const CatalogueText& TextCatalogue::find(const TeskString& key) {
    const auto known = m_texts.find(key);
    if (known != m_texts.end()) {
        return known->second;
    }
    const std::lock_guard lock(m_mutex);
    return m_unknown.try_emplace(key, CatalogueText{key, this}).first->second;
}

std::vector<std::filesystem::path> textFolders(std::string_view part,
                                               const std::filesystem::path& executableFolder) {
    const std::filesystem::path below =
        std::filesystem::path("resources") / mrl::System::path(part) / "texts";
    std::vector<std::filesystem::path> folders;
    if (!executableFolder.empty()) {
        folders.push_back(executableFolder / below);
    }
    folders.push_back(below);
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
