#include <readings/Sampling.h>

#include <algorithm>
#include <map>

namespace readings {

namespace {

constexpr double CONFIDENCE = 0.95;

using Samples = std::vector<Sample>;

std::vector<double> levelsOf(const Samples& samples) {
    std::vector<double> levels;
    levels.reserve(samples.size());
    for (const Sample& sample : samples) {
        levels.push_back(sample.level);
    }
    return levels;
}

// The levels as the adapter gives them.
std::vector<double> dbmOf(const Samples& samples) {
    std::vector<double> levels;
    levels.reserve(samples.size());
    for (const Sample& sample : samples) {
        levels.push_back(static_cast<double>(sample.reading.dbm));
    }
    return levels;
}

// The measurement so far.
class Measurement {
public:
    Measurement(const SamplingPlan& plan, const std::function<void(const Sample&)>& onSample)
        : m_plan(plan), m_onSample(onSample) {}

    void add(const Look& look) {
        m_listed = m_listed || look.listed;
        m_error = look.error;
        if (look.scanError != ERROR_SUCCESS) {
            m_scanError = look.scanError;
        }
        for (const Reading& reading : look.readings) {
            Sample sample{.seconds = seconds(reading.at),
                          .level = static_cast<double>(reading.dbm) +
                                   correctionOf(m_plan, reading).offset,
                          .reading = reading};
            Samples& samples = m_samples[reading.bssid];
            if (samples.size() < m_plan.samples) {
                samples.push_back(sample);
                if (m_onSample) {
                    m_onSample(sample);
                }
            }
        }
    }

    double seconds(mrl::Clock::Duration at) const {
        return std::chrono::duration<double>(at - m_start).count();
    }
    double seconds() const { return seconds(mrl::Clock::current().now()); }

    bool isOver() const {
        return seconds() >= std::chrono::duration<double>(m_plan.longest).count();
    }

    // Whether more readings would hardly tell more.
    bool isEnough() {
        const Samples* const best = strongest();
        if (best == nullptr || best->size() < FEWEST_READINGS) {
            return false;
        }
        if (isAmbiguous()) {
            return std::ranges::all_of(
                m_samples, [](const auto& each) { return each.second.size() >= FEWEST_READINGS; });
        }
        if (best->size() >= m_plan.samples) {
            return true;
        }
        m_early = m_plan.mayEndEarly &&
                  statistics::decided(levelsOf(*best), 0, limitsFor(m_plan, best->back().reading));
        return m_early;
    }

    Sampling result(const LevelSource& source, bool interrupted) {
        Sampling sampling;
        sampling.dropped = source.dropped();
        sampling.scans = source.scans();
        sampling.seconds = seconds();
        sampling.candidates = candidates();
        sampling.none = reason(sampling, interrupted);
        if (sampling.none == NoLevel::DENIED || sampling.none == NoLevel::RADIO_OFF ||
            sampling.none == NoLevel::NO_SERVICE || sampling.none == NoLevel::FAILED) {
            sampling.error = m_error != ERROR_SUCCESS ? m_error : m_scanError;
        }
        if (const Samples* const best = strongest()) {
            sampling.sampled = sampledOf(*best);
        }
        return sampling;
    }

private:
    // Of the candidates the one with the highest level; null without a sample.
    const Samples* strongest() const {
        const Samples* best = nullptr;
        double highest = 0;
        for (const auto& [bssid, samples] : m_samples) {
            const double level = statistics::median(levelsOf(samples));
            if (best == nullptr || level > highest) {
                best = &samples;
                highest = level;
            }
        }
        return best;
    }

    std::vector<Candidate> candidates() const {
        std::vector<Candidate> all;
        for (const auto& [bssid, samples] : m_samples) {
            all.push_back({.bssid = bssid,
                           .mhz = samples.back().reading.mhz,
                           .level = statistics::median(dbmOf(samples)),
                           .readings = samples.size()});
        }
        std::ranges::sort(all, [](const Candidate& a, const Candidate& b) {
            return a.level > b.level || (a.level == b.level && a.bssid < b.bssid);
        });
        return all;
    }

    bool isAmbiguous() const {
        const std::vector<Candidate> all = candidates();
        return all.size() > 1 && all.front().level - all.back().level > SAME_LEVEL;
    }

    std::optional<NoLevel> reason(const Sampling& sampling, bool interrupted) const {
        if (interrupted) {
            return NoLevel::INTERRUPTED;
        }
        const Samples* const best = strongest();
        if (best != nullptr && best->size() >= FEWEST_READINGS) {
            return isAmbiguous() ? std::optional(NoLevel::AMBIGUOUS) : std::nullopt;
        }
        for (const DWORD error : {m_error, best == nullptr ? m_scanError : DWORD{ERROR_SUCCESS}}) {
            if (error == ERROR_NDIS_DOT11_POWER_STATE_INVALID) {
                return NoLevel::RADIO_OFF;
            }
            if (error == ERROR_ACCESS_DENIED) {
                return NoLevel::DENIED;
            }
        }
        if (m_error != ERROR_SUCCESS) {
            return m_error == ERROR_SERVICE_NOT_ACTIVE ? NoLevel::NO_SERVICE : NoLevel::FAILED;
        }
        if (!m_listed) {
            return NoLevel::NOT_SEEN;
        }
        if (best != nullptr) {
            return NoLevel::TOO_FEW;
        }
        return sampling.dropped.outOfRange > 0 ? NoLevel::NO_LEVELS : NoLevel::ONLY_OLD;
    }

    Sampled sampledOf(const Samples& samples) const {
        const std::vector<double> levels = levelsOf(samples);
        std::vector<statistics::TimedReading> timed;
        for (const Sample& sample : samples) {
            timed.push_back({.seconds = sample.seconds, .value = sample.level});
        }
        return {.samples = samples,
                .level = statistics::median(levels),
                .interval = statistics::medianInterval(levels, CONFIDENCE),
                .spread = statistics::spread(levels),
                .trend = statistics::trend(timed),
                .effective = statistics::effectiveReadings(levels),
                .early = m_early};
    }

    const SamplingPlan& m_plan;
    const std::function<void(const Sample&)>& m_onSample;
    const mrl::Clock::Duration m_start = mrl::Clock::current().now();
    std::map<Bssid, Samples> m_samples;
    bool m_listed = false;
    bool m_early = false;
    DWORD m_error = ERROR_SUCCESS;     ///< of the last look
    DWORD m_scanError = ERROR_SUCCESS; ///< of the last scan that was refused
};

} // namespace

Correction correctionOf(const SamplingPlan& plan, const Reading& reading) {
    Correction correction = plan.calibration ? plan.calibration(reading) : Correction();
    correction.offset += plan.offset;
    return correction;
}

statistics::LevelLimits limitsFor(const SamplingPlan& plan, const Reading& reading) {
    statistics::LevelLimits limits = plan.limits;
    limits.guardBand += correctionOf(plan, reading).uncertainty;
    return limits;
}

Sampling measure(LevelSource& source, const SamplingPlan& plan,
                 const std::function<void(const Sample&)>& onSample,
                 const std::function<bool()>& stop) {
    Measurement measurement(plan, onSample);
    for (;; mrl::Clock::current().sleep(source.pause())) {
        if (stop && stop()) {
            return measurement.result(source, true);
        }
        measurement.add(source.look());
        if (measurement.isEnough() || measurement.isOver()) {
            return measurement.result(source, false);
        }
    }
}

} // namespace readings
