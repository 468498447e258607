// Texts that console and reports share.
#pragma once

#include "run/Runner.h"

#include <string>
#include <vector>

namespace tesk5 {

/// The result in the language in force: "Passed".
std::string resultInWords(const TestResult& result);

/// A fact of a run, in words.
struct FactInWords {
    std::string name;
    std::string meaning; ///< what a tag means, where that is fixed; else empty
    std::string value;
};

/// What is known of the run besides its identifier: its tags by their names, the PC, the limits and
/// the calibration in force.
std::vector<FactInWords> identityWords(const RunIdentity& identity);

/// The identifier of the test, and its name for people in parentheses when it has one.
std::string labelOf(const Test& test);

/// The measurement with its bar in one line, then a line for each of its figures.
std::vector<std::string> measurementLines(const Measurement& measurement);

/// Measurements, surveys and advice, one line each.
std::vector<std::string> observationLines(const Outcome& outcome);

/// The text of an event, and how often it was raised if that was more than once.
std::string eventText(const RaisedEvent& event);

/// The variables of an event that its text does not contain.
Event::Variables unspokenVariables(const RaisedEvent& event);

/// Whether the advice explains the outcome, and so comes before the events: the test measured
/// nothing, and what kept it from measuring is known.
bool adviceExplains(const Outcome& outcome);

/// Whether the result is good, and came from a clear view of what was tested.
bool plainlyGood(const Outcome& outcome);

/// The event that explains a bad result: the first error, or the first warning without any error;
/// null without events.
const RaisedEvent* leadingEvent(const Outcome& outcome);

/// The reason for a bad result, in one line.
std::string reasonFor(const Outcome& outcome);

/// The findings that are not good, one line each.
std::vector<std::string> adviceLines(const Findings& advice);

/// The entries of a survey, the strongest first.
std::vector<Survey::Entry> strongestFirst(const Survey& survey);

} // namespace tesk5
