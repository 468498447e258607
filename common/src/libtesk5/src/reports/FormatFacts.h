// What the open formats of production lines have in common: who a run was about, and a measurement
// as they hold it.
#pragma once

#include "run/Runner.h"

#include <tesk5/RunIdentity.h>

#include <mrl/Json.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace tesk5 {

/// The row of a table whose member `result` is `result`; the table has all of them.
template <typename Row, std::size_t ROWS>
const Row& rowFor(const TestResult& result, const Row (&table)[ROWS]) {
    return *std::find_if(std::begin(table), std::end(table),
                         [&result](const Row& row) { return row.result == result; });
}

/// The value of a tag; `otherwise` without it.
std::string tagOr(const RunIdentity& identity, std::string_view tag, const std::string& otherwise);

/// The serial number of the unit under test: the tag, else the one in the PC's firmware, else
/// `otherwise`.
std::string unitSerial(const RunIdentity& identity, const std::string& otherwise);

/// "TEST[DEVICE]": formats that know no device have it in the name of the step.
std::string stepName(const Outcome& outcome);

/// The limits of one severity between which a value must be. Of several the strictest.
struct Bounds {
    const Limit* low = nullptr;  ///< Kept::ABOVE or Kept::AT_LEAST
    const Limit* high = nullptr; ///< Kept::AT_MOST
};
Bounds boundsOf(const std::vector<Limit>& limits, Severity severity);

/// The name that a figure has beside its measurement: "Level.Drift".
std::string figureName(const Measurement& measurement, const Figure& figure);

/// Adds each parameter of a test that has a value, under "TEST.PARAMETER".
void addParameters(mrl::Json& json, const Test& test,
                   const std::vector<ParameterInForce>& parameters);

/// Milliseconds since 1970.
std::int64_t millisecondsOf(mrl::Clock::UtcTime time);

/// When a run of a test ended.
mrl::Clock::UtcTime endOf(const Outcome& outcome);

} // namespace tesk5
