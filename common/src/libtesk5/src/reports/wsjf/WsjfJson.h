// A report of Wsjf.h in JSON.
#pragma once

#include "reports/wsjf/Wsjf.h"

#include <mrl/Json.h>

namespace tesk5::wsjf {

mrl::Json jsonOf(const Report& report);

} // namespace tesk5::wsjf
