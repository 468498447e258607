// The handler of console events, for tests: they cannot close a console.
#pragma once

namespace tesk5 {

/// The handler that a watch installs. The console calls it on a thread of its own.
/// \param event CTRL_C_EVENT and so on
/// \return whether the event is dealt with: not without a watch
/// Does not return for an event that ends the process
int __stdcall onConsoleEvent(unsigned long event);

} // namespace tesk5
