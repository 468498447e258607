// How long a calibration may be used.
#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace calibration {

enum class Validity {
    VALID,
    NOT_YET, ///< dated in the future: the clock of this machine or of the other one was wrong
    EXPIRED,
};

/// \param days from `date` on which it may be used, that day included; 1 or more
Validity validity(std::chrono::sys_days date, int days, std::chrono::sys_days today);

/// The day that `text` names as "2026-11-22"; none for anything else and for a day that does not
/// exist.
std::optional<std::chrono::sys_days> parseDay(std::string_view text);

} // namespace calibration
