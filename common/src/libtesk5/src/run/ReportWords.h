// Words that console and reports have in common.
#pragma once

#include "run/Runner.h"

#include <string>
#include <vector>

namespace tesk5 {

/// The result in the language in force: "Passed".
std::string resultInWords(const TestResult& result);

/// What was measured and what else was there, a line each.
std::vector<std::string> observationLines(const Outcome& outcome);

/// The variables of an event that its text does not carry.
Event::Variables unspokenVariables(const RaisedEvent& event);

/// What is not as it should be, a line each.
std::vector<std::string> adviceLines(const Findings& advice);

/// The entries of a survey, the strongest first.
std::vector<Survey::Entry> strongestFirst(const Survey& survey);

} // namespace tesk5
