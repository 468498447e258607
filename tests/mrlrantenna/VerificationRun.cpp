#include "VerificationRun.h"

#include <MRLrAntenna.h>
#include <ModuleObjects.h>

#include <algorithm>

namespace test {

namespace {

constexpr std::uint32_t NOT_VISIBLE = 0x28002;

// Of "Lab", only what the second scan hears; the list shows it from the second look on.
std::vector<radiosim::AccessPoint> networks(bool labIsListed) {
    std::vector<radiosim::AccessPoint> all = {
        {.ssid = "Attic", .signal = 30U, .connectable = false, .reason = NOT_VISIBLE},
        {.ssid = "Cellar", .signal = 100U},
        {.ssid = "Lab",
         .signal = 60U,
         .visible = radiosim::Visible::AFTER_SCAN,
         .scans = 2,
         .inNetworkList = false}};
    if (labIsListed) {
        all.push_back(
            {.ssid = "Lab", .signal = 50U, .bss = std::vector<radiosim::Bss>(), .bssidCount = 1});
    }
    return all;
}

} // namespace

VerificationRun::~VerificationRun() {
    for (tesk5::Parameter* parameter :
         {parameters::ssid, parameters::warningSignalStrength, parameters::failingSignalStrength}) {
        parameter->reset();
    }
}

void VerificationRun::startScene() {
    startRadio(radiosim::Scenario{
        .interfaces = {{.connection = radiosim::Connection{.ssid = "Cellar", .quality = 33U},
                        .accessPoints = networks(false)}}});
    m_calls = 0;
    radio().onCall([this](const radiosim::Call& call) {
        if (call.function == "WlanGetAvailableNetworkList" && call.result == ERROR_SUCCESS) {
            radio().setAccessPoints(0, networks(true));
        }
        ++m_calls;
        if (afterCall) {
            afterCall(m_calls, call);
        }
    });
}

tesk5::TestResult VerificationRun::verify(const char* ssid, const char* warn, const char* fail) {
    parameters::ssid->set(ssid);
    parameters::warningSignalStrength->set(warn);
    parameters::failingSignalStrength->set(fail);
    return WirelessSignalStrengthVerificationTest(device());
}

std::size_t VerificationRun::handlesLeft(std::size_t first) const {
    const std::vector<radiosim::Call> calls = radio().calls();
    return static_cast<std::size_t>(
        std::count_if(calls.begin() + static_cast<std::ptrdiff_t>(std::min(first, calls.size())),
                      calls.end(), [](const radiosim::Call& call) {
                          const bool succeeded = call.result == ERROR_SUCCESS;
                          return (call.function == "WlanOpenHandle" && succeeded &&
                                  call.arguments.starts_with("{\"clientVersion\":1,")) ||
                                 (call.function == "WlanCloseHandle" && !succeeded);
                      }));
}

} // namespace test
