#include <networkadapters/MachineCheck.h>

namespace networkadapters {

tesk5::Findings checkMachine() {
    return {};
}

// Since Windows 11 24H2 access to networks is access to the location.
tesk5::Finding accessDenied(const tesk5::TeskString& device, const char* function, DWORD error) {
    return {"DOCTOR_LOCATION_OFF",
            false,
            {{"Device", device}, {"Function", function}, {"Error", error}}};
}

} // namespace networkadapters
