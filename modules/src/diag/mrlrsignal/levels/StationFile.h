// The calibration of a station as its file has it: the table [calibration] of a configuration file,
// which the command calibrate writes and SignalLevelTest takes.
#pragma once

#include <calibration/Offset.h>
#include <readings/Target.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace levels {

/// With what probability the intervals of a calibration cover the true offset.
inline constexpr double CALIBRATION_CONFIDENCE = 0.95;
inline constexpr int MOST_CALIBRATION_DAYS = 3650;
inline constexpr std::size_t MOST_PLACEMENTS = 100;

/// One radio of an access point, as this station hears it.
struct RadioCalibration {
    readings::Bssid bssid{};
    nativewifi::Band band = nativewifi::Band::GHZ_2_4;
    calibration::Reference reference;
    std::vector<double> placements; ///< dBm: the median of each
    double step = 0;                ///< dB, of the readings
    std::size_t samples = 0;        ///< of each placement, at most
    std::string unit;               ///< the golden unit
    std::chrono::sys_days date;
    int days = 0;         ///< for which it may be used
    std::string software; ///< that measured it

    calibration::Offset offset() const;
    /// The first day on which it may not be used.
    std::chrono::sys_days expiry() const { return date + std::chrono::days(days); }
};

struct Station {
    std::string name;
    std::vector<RadioCalibration> radios;

    /// Null for a radio that was not calibrated.
    const RadioCalibration* find(const readings::Bssid& bssid,
                                 std::optional<nativewifi::Band> band) const;
    /// Adds it, in the place of an earlier one of the same radio.
    void put(RadioCalibration radio);
};

struct StationFile {
    Station station;
    std::string sha256;            ///< of the file's bytes
    bool hasOtherSettings = false; ///< tables and keys besides the calibration
};

/// The station's calibration in a file (UTF-8 path).
/// Failure: throws tesk5::BadInput, also for offsets that do not follow from their placements
StationFile readStation(const std::string& path);

/// The text of such a file.
std::string stationText(const Station& station);

/// "2.4", "5" or "6", as the parameter Band has it.
const char* bandName(nativewifi::Band band);
/// "2026-11-22".
std::string dayText(std::chrono::sys_days day);
/// The local day of the clock in force.
std::chrono::sys_days today();

} // namespace levels
