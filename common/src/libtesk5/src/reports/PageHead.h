// What the pages for people have in common.
#pragma once

#include <tesk5/RunContext.h>

#include <mrl/Clock.h>
#include <mrl/Json.h>

#include <string>
#include <string_view>

namespace tesk5 {

/// The values of the head of a page: its language and direction, its title and the program.
mrl::Json pageHead(const std::string& title, const ModuleVersion& version);

/// Gives each tag of the template `text` that is the key of a text that text.
void setTexts(mrl::Json& page, std::string_view text);

/// A time for programs and for people.
mrl::Json timeJson(mrl::Clock::UtcTime time);

} // namespace tesk5
