// The texts of this library's findings.
#pragma once

#include <tesk5/ModuleInfo.h>

namespace networkadapters {

/// Key of the text for tests without a device, for ModuleInfo::noDevice.
inline constexpr const char* NO_ADAPTER = "DOCTOR_NO_ADAPTER";

/// Where the texts are, for ModuleInfo::sharedTexts. Any thread.
tesk5::TextPart adapterTexts();

} // namespace networkadapters
