// Texts that differ from one system to another.
#pragma once

#include <mrl/System.h>

#include <string>

namespace test {

/// The one for the system that the tests run on.
inline std::string ofSystem(const char* onWindows, const char* onLinux) {
    return mrl::System::name() == "windows" ? onWindows : onLinux;
}

} // namespace test
