// The schemas of the open formats.
#pragma once

#include <string_view>

namespace test {

std::string_view ocpSchema();
std::string_view wsjfSchema();
std::string_view openHtfSchema();

} // namespace test
