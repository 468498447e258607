// How the sources of WirelessDevice write to the log: one logger, one priority, one form.
#pragma once

#include <mrl/LoggerStream.h>
#include <mrl/TraceLogger.h>

/// Path of the class's main source inside the repository, for events, whose line numbers hosts know
/// and that do not move with the code.
inline constexpr const char* DEVICE_SOURCE_FILE =
    "modules/src/windows/diag/mrlrantenna/WirelessDevice.cpp";

/// The logger "mrlrnetwork.WirelessDevice", or null when a line of priority 1 would not be written.
inline mrl::Logger* deviceLogger() {
    static mrl::Logger& logger = mrl::LogFactory::createLogger("mrlrnetwork.WirelessDevice");
    return logger.admitting(1);
}

// The compilers' own place of the caller: this project's clang-tidy has no std::source_location.

/// A line that begins with `line`, by default the number of the calling line.
inline mrl::LoggerStream deviceLog(int line = __builtin_LINE()) {
    return mrl::LoggerStream(deviceLogger(), 1, static_cast<mrl::Uint32>(line));
}

/// The trace scope of an operation.
inline mrl::TraceLogger deviceTrace(const char* name, const char* file = __builtin_FILE(),
                                    int line = __builtin_LINE()) {
    return mrl::TraceLogger(deviceLogger(), name, file, line);
}
