#include <tesk5/Finding.h>

#include <algorithm>

namespace tesk5 {

void addOnce(Finding finding, Findings& findings) {
    const auto isSame = [&finding](const Finding& other) {
        return other.key == finding.key && other.variables == finding.variables;
    };
    if (std::none_of(findings.begin(), findings.end(), isSame)) {
        findings.push_back(std::move(finding));
    }
}

} // namespace tesk5
