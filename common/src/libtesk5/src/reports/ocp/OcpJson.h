// The messages of Ocp.h in JSON.
#pragma once

#include "reports/ocp/Ocp.h"

#include <mrl/Json.h>

namespace tesk5::ocp {

/// The message, with no null in it: readers of the format refuse nulls.
mrl::Json jsonOf(const OutputArtifact& artifact);

} // namespace tesk5::ocp
