// How the sources of WirelessDevice write to the log: one logger, one priority, one form.
#pragma once

#include <mrl/LoggerStream.h>
#include <mrl/TraceLogger.h>

#include <source_location>

/// Path of the class's main source inside the repository, for events, whose line numbers hosts know
/// and that do not move with the code.
inline constexpr const char* DEVICE_SOURCE_FILE =
    "modules/src/windows/diag/mrlrantenna/WirelessDevice.cpp";

/// The logger "mrlrnetwork.WirelessDevice", or null when a line of priority 1 would not be written.
mrl::Logger* deviceLogger();

/// A line that begins with `line`, by default the number of the calling line.
inline mrl::LoggerStream deviceLog(mrl::Uint32 line = std::source_location::current().line()) {
    return mrl::LoggerStream(deviceLogger(), 1, line);
}

/// The trace scope of an operation.
inline mrl::TraceLogger deviceTrace(const char* name,
                                    std::source_location where = std::source_location::current()) {
    return mrl::TraceLogger(deviceLogger(), name, where.file_name(),
                            static_cast<int>(where.line()));
}
