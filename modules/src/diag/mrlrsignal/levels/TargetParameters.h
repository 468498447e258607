// What the module's tests have in common: the target that the parameters name, its samples in
// reports, and why there is no level of it.
#pragma once

#include <tesk5/DiagDevice.h>
#include <tesk5/Event.h>
#include <tesk5/Finding.h>
#include <tesk5/Parameter.h>
#include <tesk5/TestResult.h>

#include <readings/Sampling.h>

#include <optional>
#include <string>

namespace levels {

/// The number in force; nothing when the parameter has none.
std::optional<double> numberOf(const tesk5::Parameter* parameter);
double numberOr(const tesk5::Parameter* parameter, double otherwise);

/// With the decimals in which levels are shown.
tesk5::Number rounded(double value);
/// A level in dBm and a difference in dB for events and findings.
tesk5::Value levelIn(double dbm);
tesk5::Value decibelsIn(double decibels);
/// The number of a parameter that has one, with its unit, for events and findings.
tesk5::Value quantityOf(const tesk5::Parameter* parameter);

/// The access point that SSID, BSSID and Band name.
readings::Target targetOfParameters();
/// What is wrong with SSID and BSSID, as a ParameterCheck.
tesk5::Findings targetFindings(bool complete);
/// What Samples and MaxSeconds plan, without limits.
readings::SamplingPlan planOfParameters();
/// The interface of a device of the run.
GUID interfaceOf(const tesk5::DiagDevice& device);

/// What people call the target: its SSID, or else its BSSID.
tesk5::TeskString nameOfTarget();
/// Gives the event the target's "Name", which is its SSID, or else its BSSID. \return the event
tesk5::Event* aboutTarget(tesk5::Event* event);
/// Where a reading comes from, for series.
tesk5::Event::Variables attributesOf(const readings::Reading& reading);

/// Why the measurement has no level, as a sentence; empty when it has one, and after an
/// interruption.
std::string whyNoLevel(const readings::Sampling& sampling);

/// Raises the event of the reason why there is no level, and asks for advice where the examination
/// can find the cause.
/// \return CANNOTRUN; USERABORTED of an interrupted measurement
tesk5::TestResult withoutLevel(const readings::Sampling& sampling);

} // namespace levels
