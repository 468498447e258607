// Captures of the radio for the framework: the Native Wifi interface and the list of adapters.
#pragma once

#include <tesk5/Captures.h>

namespace networkadapters {

/// For ModuleInfo::captures. Any thread.
const tesk5::CaptureSupport& radioCaptures();

} // namespace networkadapters
