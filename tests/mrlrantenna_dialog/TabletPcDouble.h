// Lets a test say whether this is a Tablet PC.
#pragma once

namespace doubles {

inline bool tabletPc = false;

} // namespace doubles
