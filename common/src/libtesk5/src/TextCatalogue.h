// Texts by key, from the files of a language with a compiled-in copy behind them.
#pragma once

#include <tesk5/TeskString.h>

#include <filesystem>
#include <map>
#include <mutex>
#include <string_view>
#include <vector>

namespace tesk5 {

/// The texts of one language. Immutable but for the keys that nobody knows; any thread.
class TextCatalogue {
public:
    /// Reads <language>.json from the first of `folders` that has a usable one, and then, for the
    /// keys that it lacks, en.json in the same way and `builtIn`. A file that cannot be used is
    /// named in the log and passed over: a damaged installation must not cost a verdict.
    TextCatalogue(const std::vector<std::filesystem::path>& folders, std::string_view language,
                  std::string_view builtIn);

    /// The text of `key`, or the key itself. The reference stays valid as long as the catalogue.
    const TeskString& textOf(const TeskString& key);

private:
    std::map<TeskString, TeskString> m_texts;
    std::mutex m_mutex;
    std::map<TeskString, TeskString> m_unknown;
};

/// The folders in which the texts of a module are looked for: below `executableFolder`, then below
/// the current one.
std::vector<std::filesystem::path> textFolders(std::string_view module,
                                               const std::filesystem::path& executableFolder);

} // namespace tesk5
