#include <networkadapters/RadioFindings.h>

#include <networkadapters/MachineCheck.h>

#include <algorithm>

namespace networkadapters {

using tesk5::Finding;
using tesk5::TeskString;

Finding callFailed(const TeskString& device, const char* function, DWORD error) {
    return {"DOCTOR_CALL_FAILED",
            false,
            {{"Device", device}, {"Function", function}, {"Error", error}}};
}

Finding radioSwitchedOff(const TeskString& device, bool byHardware) {
    return {byHardware ? "DOCTOR_RADIO_HARDWARE_OFF" : "DOCTOR_RADIO_SOFTWARE_OFF",
            false,
            {{"Device", device}}};
}

Finding noNetworks(const TeskString& device) {
    return {"DOCTOR_NO_NETWORKS", false, {{"Device", device}, {"Count", 0U}}};
}

bool explainsRadio(const tesk5::Findings& findings) {
    return std::any_of(findings.begin(), findings.end(),
                       [](const Finding& finding) { return finding.key == INTERFACE_DOWN; });
}

} // namespace networkadapters
