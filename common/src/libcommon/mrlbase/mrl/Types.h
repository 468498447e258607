// The integer and character types of Basekit.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace mrl {

using Uint8 = std::uint8_t;
using Uint16 = std::uint16_t;
using Uint32 = std::uint32_t;
using Int32 = std::int32_t;

// One UTF-16 code unit. On Windows it is the character type of the system's functions; elsewhere
// wchar_t has another size.
#ifdef _WIN32
using Char = wchar_t;
/// A UTF-16 literal: MRL_TEXT("...").
#define MRL_TEXT(literal) L##literal
#else
using Char = char16_t;
/// A UTF-16 literal: MRL_TEXT("...").
#define MRL_TEXT(literal) u##literal
#endif
static_assert(sizeof(Char) == 2);

using CharString = std::basic_string<Char>;
using CharView = std::basic_string_view<Char>;

} // namespace mrl
