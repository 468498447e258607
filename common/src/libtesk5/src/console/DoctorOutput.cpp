#include "console/DoctorOutput.h"

#include <tesk5/TestResult.h>
#include <tesk5/Texts.h>

#include "console/Console.h"

#include <algorithm>

namespace tesk5 {

int showDiagnosis(const Findings& findings) {
    for (const Finding& finding : findings) {
        writeLine(mrl::cout,
                  message(finding.good ? "DOCTOR_OK" : "DOCTOR_PROBLEM") + ": " + message(finding));
    }
    const auto problems =
        findings.size() -
        static_cast<std::size_t>(std::count_if(
            findings.begin(), findings.end(), [](const Finding& finding) { return finding.good; }));
    const int exitValue = problems == 0 ? 0 : TestResult::CANNOTRUN().value();
    writeLine(mrl::cout, message(problems == 0 ? "DOCTOR_ALL_WELL" : "DOCTOR_PROBLEMS",
                                 {{"Count", static_cast<mrl::Uint32>(problems)},
                                  {"ExitValue", static_cast<mrl::Uint32>(exitValue)}}));
    return exitValue;
}

} // namespace tesk5
