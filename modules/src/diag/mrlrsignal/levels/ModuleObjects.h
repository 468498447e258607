// Every event and parameter of the module, each known to the framework by its key.
//
// One list names them all in the order of their creation; the framework lists, translates and
// reports them in that order, so it must not depend on how a program was linked.
#pragma once

#include <tesk5/DiagModule.h>

// EVENT(variable, key)
#define MRLRSIGNAL_EVENTS(EVENT)                                                                   \
    EVENT(levelBelowFailing, "LEVEL_BELOW_FAILING")                                                \
    EVENT(levelBelowWarning, "LEVEL_BELOW_WARNING")                                                \
    EVENT(levelTooClose, "LEVEL_TOO_CLOSE")                                                        \
    EVENT(spreadTooLarge, "SPREAD_TOO_LARGE")                                                      \
    EVENT(driftTooLarge, "DRIFT_TOO_LARGE")                                                        \
    EVENT(calibrationExpired, "CALIBRATION_EXPIRED")                                               \
    EVENT(calibrationOtherStation, "CALIBRATION_OTHER_STATION")                                    \
    EVENT(calibrationForeign, "CALIBRATION_FOREIGN")                                               \
    EVENT(noService, "NO_LEVEL_SERVICE")                                                           \
    EVENT(radioOff, "NO_LEVEL_RADIO_OFF")                                                          \
    EVENT(denied, "NO_LEVEL_DENIED")                                                               \
    EVENT(notSeen, "NO_LEVEL_NOT_SEEN")                                                            \
    EVENT(onlyOld, "NO_LEVEL_ONLY_OLD")                                                            \
    EVENT(noLevels, "NO_LEVEL_NO_NUMBERS")                                                         \
    EVENT(tooFew, "NO_LEVEL_TOO_FEW")                                                              \
    EVENT(ambiguous, "NO_LEVEL_AMBIGUOUS")                                                         \
    EVENT(listFailed, "NO_LEVEL_LIST_FAILED")                                                      \
    EVENT(chainTooWeak, "CHAIN_TOO_WEAK")                                                          \
    EVENT(chainsSilent, "CHAINS_SILENT")                                                           \
    EVENT(oneChainOnly, "ONE_CHAIN_ONLY")                                                          \
    EVENT(noChainsOfConnection, "NO_CHAINS_OF_CONNECTION")                                         \
    EVENT(noChainsOfScan, "NO_CHAINS_OF_SCAN")

// PARAMETER(variable, name, type, default)
#define MRLRSIGNAL_PARAMETERS(PARAMETER)                                                           \
    PARAMETER(ssid, "SSID", STRING, "")                                                            \
    PARAMETER(bssid, "BSSID", STRING, "")                                                          \
    PARAMETER(band, "Band", CHOICE, "")                                                            \
    PARAMETER(warningLevel, "WarningLevel", DECIMAL, "")                                           \
    PARAMETER(failingLevel, "FailingLevel", DECIMAL, "")                                           \
    PARAMETER(guardBand, "GuardBand", DECIMAL, "0")                                                \
    PARAMETER(offset, "Offset", DECIMAL, "0")                                                      \
    PARAMETER(calibration, "Calibration", STRING, "")                                              \
    PARAMETER(station, "Station", STRING, "")                                                      \
    PARAMETER(unusableCalibration, "UnusableCalibration", CHOICE, "refuse")                        \
    PARAMETER(samples, "Samples", INTEGER, "15")                                                   \
    PARAMETER(maxSeconds, "MaxSeconds", INTEGER, "60")                                             \
    PARAMETER(maxSpread, "MaxSpread", DECIMAL, "")                                                 \
    PARAMETER(maxDrift, "MaxDrift", DECIMAL, "")                                                   \
    PARAMETER(chains, "Chains", INTEGER, "")                                                       \
    PARAMETER(maxImbalance, "MaxImbalance", DECIMAL, "15")                                         \
    PARAMETER(limits, "Limits", STRING, "")

/// Owned by the framework, alive until the process ends; not to be used before all static objects
/// exist.
namespace events {
#define MRLRSIGNAL_DECLARE_EVENT(variable, key) extern tesk5::Event* const variable;
MRLRSIGNAL_EVENTS(MRLRSIGNAL_DECLARE_EVENT)
#undef MRLRSIGNAL_DECLARE_EVENT
} // namespace events

/// Likewise.
namespace parameters {
#define MRLRSIGNAL_DECLARE_PARAMETER(variable, name, type, byDefault)                              \
    extern tesk5::Parameter* const variable;
MRLRSIGNAL_PARAMETERS(MRLRSIGNAL_DECLARE_PARAMETER)
#undef MRLRSIGNAL_DECLARE_PARAMETER
} // namespace parameters

/// The tests with their parameters, for DiagModule::setModuleInitCallback().
void initializeSignalModule();
