// Texts in the user's language, by the keys of localized strings, events, parameters and tests.
#pragma once

#include <tesk5/Event.h>
#include <tesk5/Finding.h>
#include <tesk5/TeskString.h>
#include <tesk5/Test.h>

#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// The text of `key` in the language in force; the key itself when there is none. Texts come from
/// resources/<module>/texts/<language>.json and resources/tesk5/texts/<language>.json beside the
/// executable, else below the current directory; a key that they lack comes from the English files,
/// else from the compiled-in English. The first call in a language reads its files. Any thread.
TeskString translation(const TeskString& key);

/// The same by reference, for texts that are shown again and again. Valid until the process ends
/// and as long as `key`.
const TeskString& lookUpText(const TeskString& key);

/// The text of `key` with its placeholders filled.
std::string message(const TeskString& key, const Event::Variables& variables = {});
/// The finding in words.
std::string message(const Finding& finding);
/// The reason in words.
std::string message(const Mismatch& reason);

/// `text` with each {name} replaced by the variable of that name, without the line end (\r\n) that
/// a system message ends with. A placeholder that no variable fills stays as it is.
std::string fillPlaceholders(const std::string& text, const Event::Variables& variables);

/// The tag (BCP 47) of the language in force: the one that was set, else the first of the user's
/// interface languages that has texts, else "en". Any thread.
/// Platform: GetUserPreferredUILanguages; LC_ALL, LC_MESSAGES and LANG elsewhere
std::string language();

/// Sets the language of texts from now on; the empty tag means that of the user's interface. Texts
/// handed out before stay as they are. Any thread.
/// \param tag in any letter case; of "de-AT" the texts of "de" are taken when there are no others
/// \return whether there are texts for the tag; if not, nothing has changed
bool setLanguage(std::string_view tag);

/// Whether there are texts for the tag, as setLanguage() would take them.
bool hasLanguage(std::string_view tag);

/// The tags of all languages that have texts, in alphabetical order.
std::vector<std::string> availableLanguages();

} // namespace tesk5
