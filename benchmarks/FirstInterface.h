// The device that the benchmarks use.
#pragma once

#include <radiosim/Scenario.h>

#include <tesk5/DiagDevice.h>

#include <string>

namespace bench {

/// The first interface of a scenario, as the framework hands it to a test.
inline tesk5::DiagDevice firstInterface() {
    return {"Simulated Wireless Adapter",
            tesk5::DeviceCapability::Wireless() | tesk5::DeviceCapability::NetworkCard(),
            {{"DeviceSystemName",
              tesk5::TeskString("\\DEVICE\\{" + std::string(radiosim::FIRST_INTERFACE) + "}")}}};
}

} // namespace bench
