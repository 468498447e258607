// What a study says, in words: for the console and for its page.
#pragma once

#include <study/StudyFile.h>

#include <tesk5/Number.h>

#include <string>
#include <vector>

namespace study {

/// A number as the language in force writes it.
std::string numberText(double number, int decimals, const char* unit = "");

std::string numberText(const tesk5::Number& number, const char* unit = "");

/// What a source of variation is called.
std::string sourceText(gauge::Source source);

/// "0.20 to 0.24".
std::string intervalText(const gauge::Estimate& estimate, int decimals);

/// The F tests, and what was pooled: sentences.
std::vector<std::string> testsOf(const gauge::Study& study);
/// What the average-and-range method finds: a sentence.
std::string byHandText(const gauge::AverageRange& byHand);
/// Where the study's assumptions fail: sentences.
std::vector<std::string> warningsOf(const gauge::Assumptions& found);
/// What the bench can do: sentences, about the study's parts and, with a tolerance, about it.
std::vector<std::string> verdictsOf(const gauge::Study& study);
/// How large the study is: a sentence.
std::string designText(const gauge::Design& design);

/// All of it as lines.
std::vector<std::string> studyReport(const StudyResult& result);

} // namespace study
