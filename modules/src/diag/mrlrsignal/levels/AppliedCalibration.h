// The calibration that the parameters name, as SignalLevelTest applies it.
#pragma once

#include <levels/StationFile.h>
#include <readings/Sampling.h>

#include <tesk5/Event.h>
#include <tesk5/Finding.h>
#include <tesk5/RunIdentity.h>

#include <optional>
#include <string>

namespace levels {

/// What is wrong with the parameters of the calibration, as a ParameterCheck.
/// Failure: throws tesk5::BadInput for a file that cannot be used
tesk5::Findings calibrationFindings();

/// The calibration in a file (UTF-8 path) as reports name it, for ModuleInfo::calibration: by its
/// station and the SHA-256 of the file.
/// Failure: throws tesk5::BadInput for a file that cannot be used
tesk5::InForce calibrationIn(const std::string& file);

class AppliedCalibration {
public:
    enum class Use {
        CLEAN,
        WARNED,  ///< an event has warned of it
        REFUSED, ///< an event says why
    };

    /// Reads the file that the parameters name, if they do.
    /// Failure: throws tesk5::TeskException for a file that can no longer be used
    AppliedCalibration();

    /// Raises what speaks against the file before anything is measured: another station.
    Use checkStation();
    /// Raises what speaks against it for the radio of a reading: not calibrated, expired.
    Use checkRadio(const readings::Reading& reading);

    /// For readings::SamplingPlan; none without a file, and for a radio without a correction.
    readings::Correction correctionOf(const readings::Reading& reading) const;
    bool isNamed() const { return m_file.has_value(); }
    /// For reports: which calibration a level was made with; empty when none was applied.
    tesk5::Event::Variables attributes(const readings::Reading& reading) const;

private:
    const RadioCalibration* find(const readings::Reading& reading) const;

    std::optional<StationFile> m_file;
    std::string m_path;
    bool m_isOtherStation = false;
};

} // namespace levels
