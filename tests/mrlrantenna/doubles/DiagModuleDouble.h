// The framework as the frame sees it: every call goes into the journal of the application doubles.
#pragma once

#include <functional>

namespace doubles {

/// What DiagModule::setVersion and DiagModule::start do besides being noted.
inline std::function<void()> onSetVersion;
inline std::function<int()> onStart;

} // namespace doubles
