#include "TextCatalogue.h"

#include "JsonFile.h"

#include <mrl/LoggerStream.h>
#include <mrl/System.h>
#include <mrl/Unicode.h>

namespace tesk5 {

namespace {

constexpr int PRIORITY = 4;
constexpr std::string_view FALLBACK_LANGUAGE = "en";

using Texts = std::map<TeskString, TeskString>;

Texts textsOf(const Json& json) {
    if (!json.is_object()) {
        throw JsonFailure("a text file is an object of keys and texts");
    }
    Texts texts;
    for (const auto& [key, text] : json.items()) {
        if (!text.is_string()) {
            throw JsonFailure("the text of \"" + key + "\" is no string");
        }
        texts.emplace(TeskString(key), TeskString(text.get<std::string>()));
    }
    return texts;
}

void tellUnusable(const std::string& what, const JsonFailure& failure) {
    mrl::Logger& logger = mrl::LogFactory::createLogger("tesk5.texts");
    mrl::LoggerStream(logger.admitting(PRIORITY), PRIORITY)
        << "The texts of " << what << " are not used: " << failure.what();
}

Texts firstUsable(const std::vector<std::filesystem::path>& folders, std::string_view language) {
    for (const std::filesystem::path& folder : folders) {
        const std::filesystem::path file =
            folder / mrl::System::path(std::string(language) + ".json");
        if (!isFile(file)) {
            continue;
        }
        try {
            return textsOf(readJsonFile(file));
        } catch (const JsonFailure& failure) {
            const std::u8string name = file.u8string();
            tellUnusable(std::string(name.begin(), name.end()), failure);
        }
    }
    return {};
}

Texts builtInTexts(std::string_view builtIn) {
    try {
        return textsOf(parseJson(std::string(builtIn)));
    } catch (const JsonFailure& failure) {
        tellUnusable("the program itself", failure);
        return {};
    }
}

} // namespace

TextCatalogue::TextCatalogue(const std::vector<std::filesystem::path>& folders,
                             std::string_view language, std::string_view builtIn)
    : m_texts(firstUsable(folders, language)) {
    // merge() keeps what is there already: the nearer source wins.
    if (language != FALLBACK_LANGUAGE) {
        m_texts.merge(firstUsable(folders, FALLBACK_LANGUAGE));
    }
    m_texts.merge(builtInTexts(builtIn));
}

const TeskString& TextCatalogue::textOf(const TeskString& key) {
    const auto known = m_texts.find(key);
    if (known != m_texts.end()) {
        return known->second;
    }
    const std::lock_guard lock(m_mutex);
    return m_unknown.try_emplace(key, key).first->second;
}

std::vector<std::filesystem::path> textFolders(std::string_view module,
                                               const std::filesystem::path& executableFolder) {
    const std::filesystem::path below =
        std::filesystem::path("resources") / mrl::System::path(module) / "texts";
    std::vector<std::filesystem::path> folders;
    if (!executableFolder.empty()) {
        folders.push_back(executableFolder / below);
    }
    folders.push_back(below);
    return folders;
}

} // namespace tesk5
