// What the platform's half of the library gives to the table.
#pragma once

#include <nativewifi/Api.h>

namespace nativewifi {

/// A function that Api.h declares, by its address in the platform's client library.
using AnyFunction = void (*)();

/// The address of `name` in the system directory's Wlanapi.dll, which stays loaded; null when the
/// DLL or the function is missing.
AnyFunction findWlanFunction(const char* name);

/// The error code of a call to a function that findWlanFunction() does not find.
DWORD missingFunctionError();

} // namespace nativewifi
