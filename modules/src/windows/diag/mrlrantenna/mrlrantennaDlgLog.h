// How the sources of the dialog write to the log, and a text that they share.
#pragma once

#include <mrl/LoggerStream.h>
#include <mrl/TraceLogger.h>

/// The logger "mrlrantenna.mrlrantennaDlg", or null when a line of `priority` would not be written.
mrl::Logger* dialogLogger(int priority = 1);

/// A line of `priority` that begins with the number of the calling line.
inline mrl::LoggerStream dialogLog(int priority = 1, int line = __builtin_LINE()) {
    return mrl::LoggerStream(dialogLogger(priority), priority, static_cast<mrl::Uint32>(line));
}

/// The trace scope of an operation.
inline mrl::TraceLogger dialogTrace(const char* name, const char* file = __builtin_FILE(),
                                    int line = __builtin_LINE()) {
    return mrl::TraceLogger(dialogLogger(mrl::TraceLogger::PRIORITY), name, file, line);
}

/// "42%"
inline mrl::String percentText(int percent) {
    return mrl::String(std::string_view(std::to_string(percent) + "%"));
}
