// How the sources of the dialog write to the log, and a text that they share.
#pragma once

#include <mrl/LoggerStream.h>
#include <mrl/TraceLogger.h>

#include <source_location>

/// The logger "mrlrantenna.mrlrantennaDlg", or null when a line of `priority` would not be written.
mrl::Logger* dialogLogger(int priority = 1);

/// A line of `priority` that begins with the number of the calling line.
inline mrl::LoggerStream dialogLog(int priority = 1,
                                   std::source_location where = std::source_location::current()) {
    return mrl::LoggerStream(dialogLogger(priority), priority, where.line());
}

/// The trace scope of an operation.
inline mrl::TraceLogger dialogTrace(const char* name,
                                    std::source_location where = std::source_location::current()) {
    return mrl::TraceLogger(dialogLogger(mrl::TraceLogger::PRIORITY), name, where.file_name(),
                            static_cast<int>(where.line()));
}

/// "42%"
inline mrl::String percentText(int percent) {
    return mrl::String(std::string_view(std::to_string(percent) + "%"));
}
