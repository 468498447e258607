// What controls' messages carry, as the types of messages and back.
#pragma once

#include <afxwin.h>

namespace afx {

inline int toInt(LRESULT result) {
    return static_cast<int>(result);
}

inline WPARAM toWParam(int value) {
    return static_cast<WPARAM>(value);
}

} // namespace afx
