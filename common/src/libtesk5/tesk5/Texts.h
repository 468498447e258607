// The catalogue of texts behind keys of localized strings and events.
#pragma once

#include <tesk5/Event.h>
#include <tesk5/TeskString.h>

#include <string>

namespace tesk5 {

/// The text of `key` in the language in force; the key itself when no catalogue has it. The
/// catalogue is read on the first call: resources/<module>/texts/en.json beside the executable,
/// else below the current directory, else the compiled-in copy; a key that the file lacks comes
/// from the compiled-in copy too. The reference stays valid. Any thread.
const TeskString& textOf(const TeskString& key);

/// `text` with each {name} replaced by the variable of that name, without the line end (\r\n) that
/// a system message ends with. A placeholder that no variable fills stays as it is.
std::string fillPlaceholders(const std::string& text, const Event::Variables& variables);

} // namespace tesk5
