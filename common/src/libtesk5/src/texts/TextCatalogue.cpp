#include "texts/TextCatalogue.h"

#include "texts/JsonFile.h"
#include "texts/Languages.h"

#include <mrl/LoggerStream.h>
#include <mrl/System.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <set>

namespace tesk5 {

namespace {

constexpr int PRIORITY = 4;
constexpr std::string_view FALLBACK_LANGUAGE = "en";

void tellUnusable(const std::string& what, const JsonFailure& failure) {
    mrl::Logger& logger = mrl::LogFactory::createLogger("tesk5.texts");
    mrl::LoggerStream(logger.admitting(PRIORITY), PRIORITY)
        << "The texts of " << what << " are not used: " << failure.what();
}

TextsByKey firstUsable(const std::vector<std::filesystem::path>& folders,
                       std::string_view language) {
    for (const std::filesystem::path& folder : folders) {
        const std::filesystem::path file =
            folder / mrl::System::path(std::string(language) + ".json");
        if (!isFile(file)) {
            continue;
        }
        try {
            return textsOf(readJsonText(file));
        } catch (const JsonFailure& failure) {
            const std::u8string name = file.u8string();
            tellUnusable(std::string(name.begin(), name.end()), failure);
        }
    }
    return {};
}

TextsByKey builtInTexts(std::string_view builtIn) {
    try {
        return textsOf(std::string(builtIn));
    } catch (const JsonFailure& failure) {
        tellUnusable("the program itself", failure);
        return {};
    }
}

} // namespace

TextCatalogue::TextCatalogue(const std::vector<TextSource>& sources, std::string_view language) {
    std::vector<std::string> languages = fallbacksOf(language);
    if (std::find(languages.begin(), languages.end(), FALLBACK_LANGUAGE) == languages.end()) {
        languages.emplace_back(FALLBACK_LANGUAGE);
    }
    for (const std::string& tag : languages) {
        for (const TextSource& source : sources) {
            m_unread.emplace_back(
                [folders = source.folders, tag] { return firstUsable(folders, tag); });
        }
    }
    for (const TextSource& source : sources) {
        m_unread.emplace_back([builtIn = source.builtIn] { return builtInTexts(builtIn); });
    }
}

const std::string& TextCatalogue::lookUp(const std::string& key) {
    for (std::size_t i = 0; i < m_read.size() || !m_unread.empty(); ++i) {
        if (i == m_read.size()) {
            m_read.push_back(m_unread.front()());
            m_unread.pop_front();
        }
        const auto known = m_read[i].find(key);
        if (known != m_read[i].end()) {
            return known->second;
        }
    }
    return key;
}

const CatalogueText& TextCatalogue::find(const TeskString& key) {
    const std::lock_guard lock(m_mutex);
    const auto known = m_given.find(key);
    if (known != m_given.end()) {
        return known->second;
    }
    return m_given.emplace(key, CatalogueText{TeskString(lookUp(key.utf8())), this}).first->second;
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
