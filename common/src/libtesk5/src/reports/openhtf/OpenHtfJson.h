// A record of OpenHtf.h in JSON.
#pragma once

#include "reports/openhtf/OpenHtf.h"

#include <mrl/Json.h>

namespace tesk5::openhtf {

mrl::Json jsonOf(const TestRecord& record);

} // namespace tesk5::openhtf
