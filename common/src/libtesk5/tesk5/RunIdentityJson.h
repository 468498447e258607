// The identity of a run in JSON, the same in reports, events and captures.
#pragma once

#include <tesk5/RunIdentity.h>

#include <mrl/Json.h>

namespace tesk5 {

/// The members "runIdentifier", "tags", "pc", "adapters", "limits" and "calibration", in this
/// order; without those of which nothing is known.
mrl::Json identityJson(const RunIdentity& identity);

/// What identityJson() has written into `json`, among other members.
/// Failure: throws mrl::Json::exception for a member of another type, or without what it needs
RunIdentity identityOf(const mrl::Json& json);

} // namespace tesk5
