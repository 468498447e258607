// What the platform's half of the library gives to the table.
#pragma once

#include <nativewifi/Api.h>

namespace nativewifi {

/// A function that Api.h declares, by its address in the platform's client library.
using AnyFunction = void (*)();

/// Looks `name` up in the system directory's Wlanapi.dll, which stays loaded.
/// \return its address, or null with the loader's error code in `error`
AnyFunction findWlanFunction(const char* name, DWORD& error);

} // namespace nativewifi
