// What a line says for people besides the exact values: names of codes, networks and states.
#pragma once

#include <capture/CaptureFile.h>

namespace capture {

/// The name of a function's result; null for one that has none here.
mrl::Json shownResult(DWORD result);

/// What the call was about and handed out; empty for nothing that its arguments do not say.
mrl::Json shownCall(const Call& call);

/// What the notification reports; null for one that has no name here.
mrl::Json shownNotification(const Notification& notification);

} // namespace capture
