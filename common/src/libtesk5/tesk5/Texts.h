// Texts in the language of the run, by the keys of localized strings, events, parameters and tests.
#pragma once

#include <tesk5/Event.h>
#include <tesk5/Finding.h>
#include <tesk5/TeskString.h>
#include <tesk5/Test.h>

#include <string>

namespace tesk5 {

/// The text of `key` in the current Language; the key itself when there is none. Any thread.
TeskString translation(const TeskString& key);

/// The same by reference, for texts that are shown again and again. Valid as long as the language
/// and `key`.
const TeskString& lookUpText(const TeskString& key);

/// The text of `key` with its placeholders filled.
std::string message(const TeskString& key, const Event::Variables& variables = {});
/// The finding in words.
std::string message(const Finding& finding);
/// The reason in words.
std::string message(const Mismatch& reason);

/// `number` as the variable of an event: people read it with its unit, as the language in force
/// writes it ("-57,5 dBm" in German); programs get the number alone.
Value quantity(const Number& number, const TeskString& unit);

/// `text` with each {name} replaced by the variable of that name, without the line end (\r\n) that
/// a system message ends with. A name that is UTF-8 read byte by byte is followed by what it means.
/// A placeholder that no variable fills stays as it is.
std::string fillPlaceholders(const std::string& text, const Event::Variables& variables);

} // namespace tesk5
