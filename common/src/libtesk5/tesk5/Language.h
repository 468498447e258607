// The language of a run's texts.
#pragma once

#include <tesk5/TeskString.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tesk5 {

class TextCatalogue;

/// A language and its texts, of which the first use reads the files. Any thread.
class Language {
public:
    Language();
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;
    ~Language();

    /// Sets the language from now on; the empty tag means that of the user's interface. Texts
    /// handed out before stay as they are.
    /// \param tag in any letter case; of "de-AT" the texts of "de" are taken when there are no
    /// others
    /// \return whether there are texts for the tag; if not, nothing has changed
    bool set(std::string_view tag);

    /// The tag (BCP 47) of the language in force: the one that was set, else the first of the
    /// user's interface languages that has texts, else "en".
    /// Platform: GetUserPreferredUILanguages; LC_ALL, LC_MESSAGES and LANG elsewhere
    const std::string& tag();

    /// The text of `key`, valid as long as the object and the key; the key itself when there is
    /// none. Texts come from resources/<module>/texts/<language>.json and
    /// resources/tesk5/texts/<language>.json beside the executable, else below the current
    /// directory; a key that they lack comes from the English files, else from the compiled-in
    /// English.
    const TeskString& find(const TeskString& key);

    /// Whether there are texts for the tag, as set() would take them.
    static bool hasTextsFor(std::string_view tag);

    /// The tags of all languages that have texts, in alphabetical order.
    static std::vector<std::string> available();

    /// The language of the process's own run; the user's until it is set. Never destroyed.
    static Language& ofProcess();

    /// The language of translation(), message() and LocalizedString: that of the calling thread's
    /// innermost Scope, else ofProcess().
    static Language& current();

    /// Puts a language in the place of the process's, for the calling thread. Scopes nest.
    class Scope {
    public:
        explicit Scope(Language& language);
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope();

    private:
        Language* m_outer;
    };

private:
    using Texts = std::pair<const std::string, std::unique_ptr<TextCatalogue>>;

    const Texts& inForce();

    std::mutex m_mutex;
    std::string m_chosen; ///< empty for the user's
    /// By tag; they stay for the texts that were handed out.
    std::map<std::string, std::unique_ptr<TextCatalogue>> m_read;
    const Texts* m_current = nullptr; ///< null until needed
};

} // namespace tesk5
