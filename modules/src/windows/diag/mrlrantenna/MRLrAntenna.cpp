// The verification test: find the access point, measure it, rate it.
//
// Log lines and events carry fixed numbers: hosts and log readers know the places by them, so a
// number stays with its place when the code around it moves.
#include "MRLrAntenna.h"

#include "ModuleObjects.h"
#include "Observations.h"
#include "WirelessDevice.h"
#include "WirelessDoctor.h"

#include <mrl/LoggerStream.h>
#include <mrl/Stopwatch.h>
#include <mrl/System.h>
#include <mrl/TraceLogger.h>

using mrl::String;
using tesk5::DiagModule;
using tesk5::TestResult;

namespace {

constexpr int LOG_PRIORITY = 1;

constexpr double SEARCH_LIMIT_SECONDS = 30.0;
constexpr unsigned int POLL_INTERVAL_MS = 100;
constexpr int RADIO_PHY = 0;

constexpr unsigned int HIGHEST_THRESHOLD = 99;

// The longest that a phase and all that follows it take: two forced scans, then the search with
// the reads of its last pass.
constexpr double SCAN_SECONDS = 7.0;
constexpr double LONGEST_SEARCH_SECONDS = SEARCH_LIMIT_SECONDS + 1.0;

mrl::LoggerStream moduleLog(mrl::Uint32 line) {
    return mrl::LoggerStream(moduleLogger(), LOG_PRIORITY, line);
}

mrl::TraceLogger moduleTrace(const char* name, int line) {
    return mrl::TraceLogger(moduleLogger(), name, MODULE_SOURCE_FILE, line);
}

// Raises PARAM_OUT_OF_RANGE for one threshold.
void warnOutOfRange(const tesk5::Parameter& parameter, const char* parameterName,
                    unsigned int value, mrl::Uint32 logLine, int eventLine) {
    moduleLog(logLine) << "signalStrengthParametersValid::" << parameterName
                       << " has been populated with value: " << value << " which is out of range";
    events::paramOutOfRange->setVariable("ParamName",
                                         tesk5::Value(parameterName).shownAs(parameter.name()));
    DiagModule::warning(events::paramOutOfRange, MODULE_SOURCE_FILE, eventLine);
}

// The event of a signal at or below a threshold. A warning too carries its threshold under the name
// of the failing one: hosts read that variable for both.
tesk5::Event* weakSignalEvent(const String& ssid, unsigned int threshold, unsigned int strength) {
    return events::failingSignalStrengthDetected->setVariable("SSIDName", tesk5::TeskString(ssid))
        ->setVariable("FailingSignalStrength", threshold)
        ->setVariable("DetectedSignalStrength", strength);
}

// The levels that are switched on.
std::vector<tesk5::Limit> limitsOf(unsigned int warn, unsigned int fail) {
    std::vector<tesk5::Limit> limits;
    if (warn != 0) {
        limits.push_back({"WarningSignalStrength", warn, tesk5::Severity::warning});
    }
    if (fail != 0) {
        limits.push_back({"FailingSignalStrength", fail, tesk5::Severity::error});
    }
    return limits;
}

// Index of the first record whose name, trimmed, is `ssid` in any letter case; `count` when none
// is. The matching name is left in `name`.
mrl::Uint32 findNetwork(const WirelessDevice& device, mrl::Uint32 count, const String& ssid,
                        String& name) {
    for (mrl::Uint32 i = 0; i < count; ++i) {
        name = device.m_visibleNetworks[i].m_ssid;
        name.trim();
        if (name.empty()) {
            continue;
        }
        moduleLog(179) << "getAccessPointSignalStrength::SSID Being Compared: " << name;
        if (isAccessPoint(name, ssid)) {
            return i;
        }
    }
    return count;
}

} // namespace

mrl::Logger* moduleLogger() {
    static mrl::Logger& logger = mrl::LogFactory::createLogger("mrlrantenna");
    return logger.admitting(LOG_PRIORITY);
}

void initializeModule() {
    signalStrengthTest->addParameter(parameters::ssid);
    signalStrengthTest->addParameter(parameters::warningSignalStrength);
    signalStrengthTest->addParameter(parameters::failingSignalStrength);
    signalStrengthTest->setParameterCheck(&checkTestParameters,
                                          tesk5::WrongParameters::LEFT_TO_TEST);
}

bool getAccessPointSignalStrength(const tesk5::DiagDevice& device, const String& ssid,
                                  unsigned int& signalStrength, bool& radioOn) {
    const mrl::TraceLogger trace = moduleTrace("getAccessPointSignalStrength", 144);
    WirelessDevice wirelessDevice(device);

    // The driver's list may be stale, or still filling after the radio woke up: a forced scan
    // first, with one retry.
    unsigned int forcedStrength = 0;
    DiagModule::progresses("SCANNING", 2 * SCAN_SECONDS + LONGEST_SEARCH_SECONDS);
    bool forcedFound = wirelessDevice.forceScanMatched(ssid, forcedStrength);
    if (!forcedFound) {
        DiagModule::progresses("SCANNING_AGAIN", SCAN_SECONDS + LONGEST_SEARCH_SECONDS);
        forcedFound = wirelessDevice.forceScanMatched(ssid, forcedStrength);
    }
    moduleLog(154) << "getAccessPointSignalStrength::forcedScanSignalStrength: " << forcedStrength;

    DiagModule::progresses("SEARCHING", LONGEST_SEARCH_SECONDS);
    const mrl::Stopwatch stopwatch;
    for (;; mrl::System::mssleep(POLL_INTERVAL_MS)) {
        const mrl::Uint32 count = wirelessDevice.getNumVisibleNetworks();
        if (count == 0 && stopwatch.getElapsed() >= SEARCH_LIMIT_SECONDS) {
            moduleLog(163) << "getAccessPointSignalStrength::Did not find any access point";
            DiagModule::error(events::noAccessPointFound, MODULE_SOURCE_FILE, 164);
            return false;
        }
        if (!wirelessDevice.isRadioEnabled(RADIO_PHY)) {
            radioOn = false;
            return false;
        }

        String name;
        const mrl::Uint32 match = findNetwork(wirelessDevice, count, ssid, name);
        if (match < count) {
            recordNetworks(wirelessDevice, match);
            moduleLog(181) << "getAccessPointSignalStrength::Found the matching SSID: " << name;
            signalStrength =
                static_cast<unsigned int>(wirelessDevice.m_visibleNetworks[match].m_signalQuality);
            moduleLog(183) << "getAccessPointSignalStrength::getSignalStrength(): "
                           << signalStrength;
            if (forcedFound && forcedStrength > signalStrength) {
                signalStrength = forcedStrength;
                moduleLog(187) << "getAccessPointSignalStrength::forcedScanSignalStrength returned "
                                  "better result: "
                               << forcedStrength;
            }
            return true;
        }

        // Checked after the whole pass, so that the last poll counts.
        if (stopwatch.getElapsed() >= SEARCH_LIMIT_SECONDS) {
            moduleLog(194)
                << "getAccessPointSignalStrength() was not able to find a matching SSID: " << ssid
                << " after trying for " << static_cast<int>(SEARCH_LIMIT_SECONDS) << " seconds";
            recordNetworks(wirelessDevice, std::nullopt);
            return false;
        }
    }
}

bool signalStrengthParametersValid(unsigned int warn, unsigned int fail) {
    const mrl::TraceLogger trace = moduleTrace("signalStrengthParametersValid", 204);
    if (warn == 0 && fail == 0) {
        moduleLog(207) << "signalStrengthParametersValid::Both WarningSignalStrength and "
                          "FailingSignalStrength parameters have been set to ZERO values";
        DiagModule::warning(events::warnAndFailSignalStrengthSetZero, MODULE_SOURCE_FILE, 208);
        return false;
    }
    if (warn > HIGHEST_THRESHOLD) {
        warnOutOfRange(*parameters::warningSignalStrength, "WarningSignalStrength", warn, 213, 215);
        return false;
    }
    if (fail > HIGHEST_THRESHOLD) {
        // Spelt without the final t: hosts compare "ParamName" with exactly this text. People see
        // the parameter's name.
        warnOutOfRange(*parameters::failingSignalStrength, "FailingSignalStrengh", fail, 220, 222);
        return false;
    }
    if (warn != 0 && fail != 0 && fail >= warn) {
        moduleLog(228) << "signalStrengthParametersValid::FailingSignalStrengh signal strength: "
                       << fail << " is higher than the WarningSignalStrength: " << warn;
        events::failSignalStrengthHigherThanWarn->setVariable("FailingSignalStrength", fail)
            ->setVariable("WarningSignalStrength", warn);
        DiagModule::warning(events::failSignalStrengthHigherThanWarn, MODULE_SOURCE_FILE, 231);
        return false;
    }
    return true;
}

TestResult WirelessSignalStrengthVerificationTest(const tesk5::DiagDevice& device) {
    const mrl::TraceLogger trace = moduleTrace("WirelessSignalStrengthVerificationTest", 241);

    String ssid = parameters::ssid->value().valueString().mrlString();
    if (ssid.empty()) {
        moduleLog(245) << "WirelessSignalStrengthVerificationTest::SSID parameter was not set";
        DiagModule::warning(events::ssidNotSet, MODULE_SOURCE_FILE, 246);
        return TestResult::BADPARAMS();
    }
    // Trimmed after the check: a name of blanks is searched, as an empty name, and not found.
    ssid.trim();
    moduleLog(250) << "WirelessSignalStrengthVerificationTest::SSID to test: " << ssid;

    unsigned int strength = 0;
    bool radioOn = true;
    const bool found = getAccessPointSignalStrength(device, ssid, strength, radioOn);
    if (!radioOn) {
        moduleLog(256) << "The wireless radio is in off state";
        return TestResult::CANNOTRUN();
    }
    if (!found) {
        events::accessPointNotFound->setVariable("SSIDName", tesk5::TeskString(ssid));
        DiagModule::error(events::accessPointNotFound, MODULE_SOURCE_FILE, 261);
        moduleLog(262) << "WirelessSignalStrengthVerificationTest::SSID: " << ssid
                       << " was not found";
        return TestResult::FAIL();
    }
    moduleLog(265) << "WirelessSignalStrengthVerificationTest::getAccessPointSignalStrength() "
                      "returned signal strength: "
                   << strength << " for the SSID: " << ssid;

    // Read after the search: a missing access point is reported before bad thresholds.
    const unsigned int warn = parameters::warningSignalStrength->value().valueUint32();
    moduleLog(268) << "WirelessSignalStrengthVerificationTest::warning signal strength parameter: "
                   << warn;
    const unsigned int fail = parameters::failingSignalStrength->value().valueUint32();
    moduleLog(271) << "WirelessSignalStrengthVerificationTest::failing signal strength parameter: "
                   << fail;
    if (!signalStrengthParametersValid(warn, fail)) {
        moduleLog(275)
            << "WirelessSignalStrengthVerificationTest::invalid params caused the test to return";
        return TestResult::BADPARAMS();
    }

    recordStrength(strength, limitsOf(warn, fail));
    if (fail != 0 && strength <= fail) {
        DiagModule::error(weakSignalEvent(ssid, fail, strength), MODULE_SOURCE_FILE, 282);
        moduleLog(283) << "WirelessSignalStrengthVerificationTest::SSID: " << ssid
                       << " failing signal strength: " << fail
                       << " detected signal strength: " << strength;
        return TestResult::FAIL();
    }
    if (warn != 0 && strength <= warn) {
        DiagModule::warning(weakSignalEvent(ssid, warn, strength), MODULE_SOURCE_FILE, 291);
        moduleLog(292) << "WirelessSignalStrengthVerificationTest::SSID: " << ssid
                       << " warning signal strength: " << warn
                       << " detected signal strength: " << strength;
        return TestResult::WARN();
    }
    return TestResult::PASS();
}
