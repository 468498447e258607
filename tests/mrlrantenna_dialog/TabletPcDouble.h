// The answer to whether this is a Tablet PC, as a test wants it.
#pragma once

namespace doubles {

inline bool tabletPc = false;

} // namespace doubles
