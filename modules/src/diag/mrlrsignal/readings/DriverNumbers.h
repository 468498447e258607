// Numbers of drivers, people and files: which of them are levels, and in which unit a frequency is.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <cstdint>

namespace readings {

/// Levels in dBm lie between these two.
inline constexpr int BELOW_EACH_LEVEL = -120;
inline constexpr int ABOVE_EACH_LEVEL = 0;

/// Whether a number is a level in dBm. What drivers report for "none" is not: 0, 127, -127, -200.
constexpr bool isLevelInDbm(double number) {
    return number > BELOW_EACH_LEVEL && number < ABOVE_EACH_LEVEL;
}

/// A centre frequency in MHz. The system gives it in kHz or in MHz: no centre frequency has so many
/// MHz as each one has kHz.
constexpr std::uint32_t mhzOf(ULONG frequency) {
    constexpr ULONG KHZ_PER_MHZ = 1000;
    constexpr ULONG HIGHEST_MHZ = 100'000;
    return frequency > HIGHEST_MHZ ? frequency / KHZ_PER_MHZ : frequency;
}

} // namespace readings
