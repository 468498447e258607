#include <levels/AntennaChainTest.h>

#include <levels/ModuleObjects.h>
#include <levels/TargetParameters.h>
#include <readings/ChainSource.h>

#include <nativewifi/LinuxRadio.h>

#include <algorithm>
#include <bit>
#include <map>
#include <set>

namespace levels {

using readings::Bssid;
using readings::FEWEST_READINGS;
using readings::Sampling;
using tesk5::DiagModule;
using tesk5::Event;
using tesk5::TestResult;

namespace {

constexpr const char* IMBALANCE = "Imbalance";
constexpr const char* DBM = "dBm";
constexpr const char* DECIBEL = "dB";
constexpr int WIDEST = 60;

// Of the series and figures of the chains; people count from 1.
constexpr const char* chainNames[] = {"Chain1", "Chain2", "Chain3", "Chain4",
                                      "Chain5", "Chain6", "Chain7", "Chain8"};
static_assert(std::size(chainNames) == nativewifi::MAX_CHAINS);

// One chain that tells a level.
struct Chain {
    std::size_t number = 0; // from 0
    double level = 0;       // dBm: the median
    std::size_t readings = 0;
};

class ChainMeasurement {
public:
    explicit ChainMeasurement(const tesk5::DiagDevice& device)
        : m_interface(interfaceOf(device)), m_chains(m_interface) {}

    Sampling measure(const readings::SamplingPlan& plan) {
        readings::LevelSource source(m_interface, targetOfParameters());
        return readings::measure(
            source, plan, [this](const readings::Sample& sample) { add(sample); },
            [this] { return isSilent() || DiagModule::checkForStop(); });
    }

    // Whether the driver tells no chain of this kind of reading.
    bool isSilent() const { return m_told == 0 && m_asked >= FEWEST_READINGS; }
    readings::Source lastSource() const { return m_lastSource; }

    // The chains with enough levels of the radio, by number.
    std::vector<Chain> chainsOf(const Bssid& bssid) const {
        std::vector<Chain> chains;
        const auto heard = m_heard.find(bssid);
        if (heard == m_heard.end()) {
            return chains;
        }
        for (std::size_t number = 0; number < heard->second.size(); ++number) {
            const std::vector<double>& levels = heard->second[number];
            if (levels.size() >= FEWEST_READINGS) {
                chains.push_back({number, statistics::median(levels), levels.size()});
            }
        }
        return chains;
    }

    // A bit for each receive antenna, where the driver tells them.
    std::optional<ULONG> antennas() { return m_chains.antennas(); }

private:
    void add(const readings::Sample& sample) {
        const readings::ChainLevels told = m_chains.levelsOf(sample.reading);
        ++m_asked;
        m_told += told.empty() ? 0 : 1;
        m_lastSource = sample.reading.source;
        std::vector<std::vector<double>>& levels = m_heard[sample.reading.bssid];
        levels.resize(std::max(levels.size(), told.size()));
        for (std::size_t chain = 0; chain < told.size(); ++chain) {
            if (told[chain]) {
                const auto level = static_cast<double>(*told[chain]);
                levels[chain].push_back(level);
                if (m_inSeries.insert(chain).second) {
                    DiagModule::follows({chainNames[chain], DBM, {}, std::nullopt});
                }
                DiagModule::sampled(chainNames[chain], rounded(level), attributesOf(sample.reading),
                                    sample.seconds);
            }
        }
    }

    GUID m_interface;
    readings::ChainSource m_chains;
    std::map<Bssid, std::vector<std::vector<double>>> m_heard; // levels by chain
    std::set<std::size_t> m_inSeries;
    std::size_t m_asked = 0;
    std::size_t m_told = 0;
    readings::Source m_lastSource = readings::Source::SCAN;
};

TestResult cannotRun(Event* event) {
    DiagModule::error(aboutTarget(event), __FILE__, __LINE__);
    return TestResult::CANNOTRUN();
}

TestResult withoutChains(readings::Source source) {
    return cannotRun(source == readings::Source::SCAN ? events::noChainsOfScan
                                                      : events::noChainsOfConnection);
}

const Chain& strongestOf(const std::vector<Chain>& chains) {
    return *std::ranges::max_element(chains, {}, &Chain::level);
}

double imbalanceOf(const std::vector<Chain>& chains) {
    return strongestOf(chains).level - std::ranges::min(chains, {}, &Chain::level).level;
}

void recordChains(const std::vector<Chain>& chains) {
    std::vector<tesk5::Figure> figures;
    for (const Chain& chain : chains) {
        figures.push_back({chainNames[chain.number], rounded(chain.level), DBM});
        DiagModule::follows({chainNames[chain.number], DBM, {}, rounded(chain.level)});
    }
    figures.push_back({"Readings", tesk5::Number(strongestOf(chains).readings), ""});
    const tesk5::Limit limit{.name = parameters::maxImbalance->name(),
                             .value = *parameters::maxImbalance->number(),
                             .severity = tesk5::Severity::error,
                             .kept = tesk5::Limit::Kept::AT_MOST};
    DiagModule::measured(
        {IMBALANCE, rounded(imbalanceOf(chains)), DECIBEL, 0, WIDEST, {limit}, figures});
}

// How many chains must tell a level: those that the hardware lacks cannot.
std::size_t expectedChains(std::optional<ULONG> antennas) {
    const auto wanted = static_cast<std::size_t>(numberOr(parameters::chains, 0));
    return antennas ? std::min(wanted, static_cast<std::size_t>(std::popcount(*antennas))) : wanted;
}

// The numbers of the chains that should tell a level and do not, as people count them.
std::string silentAmong(const std::vector<Chain>& chains, std::size_t expected,
                        std::optional<ULONG> antennas) {
    std::string text;
    std::size_t counted = 0;
    for (std::size_t number = 0; counted < expected && number < sizeof(ULONG) * 8; ++number) {
        if (antennas && (*antennas >> number & 1U) == 0) {
            continue;
        }
        ++counted;
        if (std::ranges::find(chains, number, &Chain::number) == chains.end()) {
            text += (text.empty() ? "" : ", ") + std::to_string(number + 1);
        }
    }
    return text;
}

// Raises an event for each chain that is too weak. \return whether there is one
bool isAnyTooWeak(const std::vector<Chain>& chains) {
    const Chain& strongest = strongestOf(chains);
    const double most = numberOr(parameters::maxImbalance, 0);
    bool any = false;
    for (const Chain& chain : chains) {
        if (strongest.level - chain.level <= most) {
            continue;
        }
        aboutTarget(events::chainTooWeak)
            ->setVariable("Chain", tesk5::Number(chain.number + 1))
            ->setVariable("Level", levelIn(chain.level))
            ->setVariable("Imbalance", decibelsIn(strongest.level - chain.level))
            ->setVariable("Strongest", tesk5::Number(strongest.number + 1))
            ->setVariable("MaxImbalance", quantityOf(parameters::maxImbalance));
        DiagModule::error(events::chainTooWeak, __FILE__, __LINE__);
        any = true;
    }
    return any;
}

// Raises an event when chains are silent that should tell a level. \return whether there are any
bool isAnySilent(const std::vector<Chain>& chains, std::optional<ULONG> antennas) {
    const std::size_t expected = expectedChains(antennas);
    if (chains.size() >= expected) {
        return false;
    }
    aboutTarget(events::chainsSilent)
        ->setVariable("Chains", tesk5::Number(expected))
        ->setVariable("Heard", tesk5::Number(chains.size()))
        ->setVariable("Silent", silentAmong(chains, expected, antennas));
    DiagModule::error(events::chainsSilent, __FILE__, __LINE__);
    return true;
}

} // namespace

TestResult AntennaChainTest(const tesk5::DiagDevice& device) {
    readings::SamplingPlan plan = planOfParameters();
    plan.mayEndEarly = false;
    DiagModule::progresses("MEASURING_CHAINS", std::chrono::duration<double>(plan.longest).count());
    ChainMeasurement measurement(device);
    const Sampling sampling = measurement.measure(plan);
    if (measurement.isSilent()) {
        return withoutChains(measurement.lastSource());
    }
    if (sampling.none) {
        return withoutLevel(sampling);
    }
    const std::vector<Chain> chains =
        measurement.chainsOf(sampling.sampled.samples.front().reading.bssid);
    if (chains.empty()) {
        return withoutChains(measurement.lastSource());
    }
    if (chains.size() == 1 && !parameters::chains->isSet()) {
        return cannotRun(events::oneChainOnly);
    }
    recordChains(chains);
    const bool silent = isAnySilent(chains, measurement.antennas());
    const bool weak = isAnyTooWeak(chains);
    return silent || weak ? TestResult::FAIL() : TestResult::PASS();
}

} // namespace levels
