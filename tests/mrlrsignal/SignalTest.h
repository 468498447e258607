// The module's tests on the simulated radio, with "Lab" as their target and 8 s to measure it.
#pragma once

#include <levels/ModuleObjects.h>

#include <mrlrantenna/ModuleTest.h>

#include <utility>
#include <vector>

namespace test {

using namespace std::chrono_literals;

using Settings = std::vector<std::pair<tesk5::Parameter*, const char*>>;

/// A radio of an access point, heard every 100 ms; `number` ends its address.
inline radiosim::Bss radioAt(const radiosim::Level& level, std::uint8_t number = 0) {
    return {.bssid = {2, 0, 0, 0, 1, number}, .rssi = level, .heardEvery = 100ms};
}

class SignalTest : public ModuleTest {
protected:
    SignalTest() {
        static const bool initialized = (initializeSignalModule(), true);
        EXPECT_TRUE(initialized);
        give({{parameters::ssid, "Lab"}, {parameters::maxSeconds, "8"}});
    }
    ~SignalTest() override {
        for (tesk5::Parameter* const parameter : m_given) {
            parameter->reset();
        }
    }

    /// Values of parameters, until the end of the test.
    void give(const Settings& settings) {
        for (const auto& [parameter, text] : settings) {
            parameter->set(text);
            m_given.push_back(parameter);
        }
    }

private:
    std::vector<tesk5::Parameter*> m_given;
};

} // namespace test
