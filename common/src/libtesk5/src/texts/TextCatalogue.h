// Texts by key, from the files of a language with a compiled-in copy behind them.
#pragma once

#include <tesk5/TeskString.h>

#include "texts/TextFile.h"

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <string_view>
#include <vector>

namespace tesk5 {

/// Where one part of the program keeps its texts: <language>.json in one of the folders, the first
/// usable one counting, and the English ones compiled in.
struct TextSource {
    std::vector<std::filesystem::path> folders;
    std::string_view builtIn;
};

class TextCatalogue;

/// A text, and whose it is: what was found in one catalogue is of no use in another language.
struct CatalogueText {
    TeskString text;
    const TextCatalogue* catalogue;
};

/// The texts of one language. Any thread.
class TextCatalogue {
public:
    /// The texts come from the files of `language`, then, for the keys that they lack, from those
    /// of its less specific tags and of English, then from the compiled-in ones; of two sources the
    /// earlier one wins. Each is read when a key is wanted that those before it lack.
    TextCatalogue(const std::vector<TextSource>& sources, std::string_view language);

    TextCatalogue(const TextCatalogue&) = delete;
    TextCatalogue& operator=(const TextCatalogue&) = delete;
    ~TextCatalogue() = default;

    /// The text of `key`, or the key itself. The reference stays valid as long as the catalogue. A
    /// file that cannot be used is named in the log and passed over: a damaged installation must
    /// not cost a verdict.
    const CatalogueText& find(const TeskString& key);
    /// The same without its owner.
    const TeskString& textOf(const TeskString& key) { return find(key).text; }

private:
    const std::string& lookUp(const std::string& key);

    std::mutex m_mutex;
    std::deque<std::function<TextsByKey()>> m_unread;
    std::vector<TextsByKey> m_read;
    std::map<TeskString, CatalogueText> m_given;
};

/// The catalogue of the language in force. Any thread; cheap but for the first call in a language.
TextCatalogue& catalogueInForce();

/// The folders in which the texts of a part are looked for: below `executableFolder`, then below
/// the current one.
std::vector<std::filesystem::path> textFolders(std::string_view part,
                                               const std::filesystem::path& executableFolder);

/// The languages that have a file in any of the folders, and English, in alphabetical order.
std::vector<std::string> languagesOf(const std::vector<TextSource>& sources);

} // namespace tesk5
