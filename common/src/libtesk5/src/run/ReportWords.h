// Texts that console and reports share.
#pragma once

#include "run/Runner.h"

#include <string>
#include <vector>

namespace tesk5 {

/// The result in the language in force: "Passed".
std::string resultInWords(const TestResult& result);

/// Measurements, surveys and advice, one line each.
std::vector<std::string> observationLines(const Outcome& outcome);

/// The variables of an event that its text does not contain.
Event::Variables unspokenVariables(const RaisedEvent& event);

/// The findings that are not good, one line each.
std::vector<std::string> adviceLines(const Findings& advice);

/// The entries of a survey, the strongest first.
std::vector<Survey::Entry> strongestFirst(const Survey& survey);

} // namespace tesk5
