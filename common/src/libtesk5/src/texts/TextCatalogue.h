// The texts of one language, from its files, with a compiled-in copy as the fallback.
#pragma once

#include <tesk5/TeskString.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tesk5 {

/// The language whose texts stand in for missing ones.
inline constexpr std::string_view FALLBACK_LANGUAGE = "en";

/// Where one part of the program has its texts: in <language>.json in one of the folders, of which
/// the first usable one counts, and in English in the program itself.
struct TextSource {
    std::vector<std::filesystem::path> folders;
    std::string_view builtIn;
};

/// The texts of one language by key. Does not change; any thread.
class TextCatalogue {
public:
    /// Reads the files of `language`, then those of its less specific tags, then the English ones,
    /// then the compiled-in texts; the first text of a key stays. Where one of them has the key
    /// with "@" and the name of this system behind it, that text counts: remedies differ. A file
    /// that cannot be used is named in the log and passed over: a damaged installation must not
    /// cost a verdict.
    TextCatalogue(const std::vector<TextSource>& sources, std::string_view language);
    TextCatalogue(const TextCatalogue&) = delete;
    TextCatalogue& operator=(const TextCatalogue&) = delete;
    ~TextCatalogue() = default;

    /// The text of `key`, valid as long as the catalogue; `key` itself when there is none.
    const TeskString& find(const TeskString& key) const;
    const TeskString& find(TeskString&& key) const = delete;

private:
    std::unordered_map<std::string, TeskString> m_texts;
};

/// The folders in which the texts of a part are looked for: one in each of `resources`.
std::vector<std::filesystem::path> textFolders(std::string_view part,
                                               const std::vector<std::filesystem::path>& resources);

/// The languages that have a file in any of the folders, and English, in alphabetical order.
std::vector<std::string> languagesOf(const std::vector<TextSource>& sources);

} // namespace tesk5
