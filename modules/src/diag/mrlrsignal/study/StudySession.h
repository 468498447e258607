// A gauge study under way: which measurement comes next, those that are kept, and those that were
// struck out.
#pragma once

#include <gauge/CrossedReadings.h>

#include <mrl/Json.h>

#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace study {

/// The largest study that a person is guided through.
inline constexpr std::size_t MOST_PARTS = 100;
inline constexpr std::size_t MOST_OPERATORS = 20;
inline constexpr std::size_t MOST_TRIALS = 50;
/// Of one measurement: more than SignalLevelTest takes.
inline constexpr std::size_t MOST_READINGS = 10'000;

/// A measurement that is to be made or was made. Numbers from 0.
struct StudyStep {
    std::size_t op = 0;
    std::size_t part = 0;
    std::size_t trial = 0; ///< of this part by this operator

    bool operator==(const StudyStep&) const = default;
};

/// One measurement.
struct StudyMeasurement {
    StudyStep step;
    double level = 0; ///< dBm
    std::size_t readings = 0;
    std::string time; ///< UTC, as reports write it
};

/// A measurement that no longer counts, and why.
struct StruckMeasurement {
    StudyMeasurement measurement;
    std::string reason;
};

/// When a measurement that was struck out is made again.
enum class Again : std::uint8_t {
    NOW,
    LAST, ///< after all others of its operator
};

class StudySession {
public:
    /// A study without measurements, in random order: one operator after the other, each of whom
    /// measures all parts, then all of them anew. No part comes twice in succession, because
    /// neighbouring readings are alike.
    /// \param design at least 1 part, 1 operator and 2 trials
    /// \param target what people call the access point that is measured
    StudySession(const gauge::Design& design, std::string target, std::mt19937& random);

    /// The session in a file of the command study.
    /// \return nothing when `file` holds none, or not one that this version wrote
    static std::optional<StudySession> ofFile(const mrl::Json& file);

    const gauge::Design& design() const { return m_design; }
    const std::string& target() const { return m_target; }
    std::size_t planned() const { return m_design.cells() * m_design.trials; }
    std::size_t done() const { return m_measurements.size(); }
    std::size_t left() const { return planned() - done(); }

    /// What is to be measured next; nothing when all is there.
    std::optional<StudyStep> next() const;

    /// The last measurement that counts; null when there is none.
    const StudyMeasurement* last() const {
        return m_measurements.empty() ? nullptr : &m_measurements.back();
    }

    /// Keeps the measurement of next(), which there is.
    void add(double level, std::size_t readings, std::string time);

    /// Strikes out last(), which there is.
    void strikeOut(std::string reason, Again again);

    /// The readings of a study of which nothing is left; trials in the order of their measurement.
    gauge::CrossedReadings readings() const;

    /// The file of a study under way, which docs/schemas/study.schema.json describes.
    mrl::Json file() const;
    /// Its member "session" alone.
    mrl::Json json() const;

private:
    StudySession() = default;

    std::size_t doneBy(std::size_t op) const;
    void read(const mrl::Json& file);

    gauge::Design m_design;
    std::string m_target;
    std::vector<std::vector<std::size_t>> m_order; ///< of each operator's parts
    std::vector<StudyMeasurement> m_measurements;  ///< in the order in which they were made
    std::vector<StruckMeasurement> m_struckOut;
};

} // namespace study
