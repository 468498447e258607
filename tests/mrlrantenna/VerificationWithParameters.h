// What tests start from that run the verification test with parameters of their own.
#pragma once

#include "ModuleTest.h"

#include <MRLrAntenna.h>
#include <ModuleObjects.h>

namespace test {

class VerificationWithParameters : public ModuleTest {
protected:
    ~VerificationWithParameters() override {
        for (tesk5::Parameter* parameter : {parameters::ssid, parameters::warningSignalStrength,
                                            parameters::failingSignalStrength}) {
            parameter->reset();
        }
    }

    static tesk5::TestResult verify(const char* ssid, const char* warn, const char* fail) {
        parameters::ssid->set(ssid);
        parameters::warningSignalStrength->set(warn);
        parameters::failingSignalStrength->set(fail);
        return WirelessSignalStrengthVerificationTest(device());
    }
};

} // namespace test
