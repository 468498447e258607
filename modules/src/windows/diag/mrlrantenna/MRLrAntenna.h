// The module's frame: its logger, the attachment of parameters, and its two tests.
// Everything here runs on the thread that runs the module.
#pragma once

#include <tesk5/DiagModule.h>

#include <mrl/Logger.h>
#include <mrl/String.h>

/// Path of the module's main source inside the repository: events and trace scopes of the tests
/// name it as their place, with line numbers that hosts know and that do not move with the code.
inline constexpr const char* MODULE_SOURCE_FILE =
    "modules/src/windows/diag/mrlrantenna/MRLrAntenna.cpp";

/// The logger "mrlrantenna", or null when a line of priority 1 would not be written.
mrl::Logger* moduleLogger();

/// Attaches the three parameters to the verification test. The framework calls it from inside
/// DiagModule::start(); before that the test has none.
void initializeModule();

/// Rates the signal of the access point named by the parameter "SSID" against the thresholds in
/// "WarningSignalStrength" and "FailingSignalStrength" (percent, 0 to 99; 0 switches a level off).
///
/// Blocks for 7 to 45 seconds: one or two forced scans of 7 s, then up to 30 s of polling.
/// \return PASS above both thresholds; WARN at or below the warning threshold; FAIL at or below the
/// failing threshold or when the access point was not found; CANNOTRUN when the radio is off;
/// BADPARAMS for an empty name or thresholds that make no sense. The reason is raised as an event.
/// Failure: bad input and missing hardware are results; exceptions of the framework pass through.
tesk5::TestResult WirelessSignalStrengthVerificationTest(const tesk5::DiagDevice& device);

/// Lets a person turn the antennas while a dialog shows the live signal of a network.
/// \return COMPLETED, or USERABORTED when the dialog was cancelled
tesk5::TestResult DiversityTest(const tesk5::DiagDevice& device);

/// Key of the reason why this system cannot run DiversityTest; null where it can.
const char* diversityTestObstacle();

/// Whether the two thresholds (percent) may be used: at least one is not 0, both are at most 99,
/// and when both are set the failing one is the lower. When not, the reason has been logged and
/// raised as a warning.
bool signalStrengthParametersValid(unsigned int warn, unsigned int fail);

/// Finds the access point `ssid` among the networks that `device` sees, in any letter case: forces
/// a scan (twice if need be), then polls the list of visible networks every 100 ms until it shows
/// the name or 30 s have passed.
/// \param[out] signalStrength percent, the better of scan and list; unchanged when not found
/// \param[out] radioOn set to false when the radio turns out to be off, else left alone
/// \return whether the access point was found
/// Failure: an empty list after 30 s raises "NO_ACCESS_POINT_FOUND"
bool getAccessPointSignalStrength(const tesk5::DiagDevice& device, const mrl::String& ssid,
                                  unsigned int& signalStrength, bool& radioOn);
