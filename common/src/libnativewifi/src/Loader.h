// What the platform's half of the library gives to the table.
#pragma once

#include <nativewifi/Api.h>

namespace nativewifi {

/// The platform's client functions. What the platform does not have is a function that returns the
/// reason as its error code.
WlanFunctions platformWlanFunctions();

} // namespace nativewifi
