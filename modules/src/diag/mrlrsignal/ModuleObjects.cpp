// Creates the objects during static initialisation, in one file, because only within a file does
// the language fix the order.
#include "ModuleObjects.h"

#include "SignalLevelTest.h"

#include <nativewifi/WlanTypes.h>

using tesk5::DeviceCapability;
using tesk5::DiagModule;

#define MRLRSIGNAL_DEFINE_EVENT(variable, key)                                                     \
    tesk5::Event* const variable = DiagModule::createEvent(key);
#define MRLRSIGNAL_DEFINE_PARAMETER(variable, name, type, byDefault)                               \
    tesk5::Parameter* const variable =                                                             \
        DiagModule::createParameter(name, tesk5::DataType::type(), byDefault, false, true);

namespace events {
MRLRSIGNAL_EVENTS(MRLRSIGNAL_DEFINE_EVENT)
} // namespace events

namespace parameters {
MRLRSIGNAL_PARAMETERS(MRLRSIGNAL_DEFINE_PARAMETER)
} // namespace parameters

namespace {

constexpr const char* DECIBEL = "dB";

// Mobile broadband and WiMAX cards call themselves wireless too, but have no access points.
tesk5::Test* const signalLevelTest =
    DiagModule::createTest("SignalLevelTest",
                           DeviceCapability::Wireless() | DeviceCapability::NetworkCard(),
                           &SignalLevelTest)
        ->setEnumeratesOnlyOnce(false)
        ->setInteractive(false)
        ->addDevicePropertyExclusion("WirelessWAN", "")
        ->addDevicePropertyExclusion("WiMAX", "")
        ->addDevicePropertyRequirement("wlanAPISupported", "");

} // namespace

void initializeSignalModule() {
    parameters::ssid->setBytesAllowed(DOT11_SSID_MAX_LENGTH);
    parameters::band->setChoices({"2.4", "5", "6"});
    for (tesk5::Parameter* const level : {parameters::warningLevel, parameters::failingLevel}) {
        level->setRange({-110, -10, "dBm"})->setReasonForOtherSign("LEVEL_WITHOUT_SIGN");
    }
    parameters::guardBand->setRange({0, 20, DECIBEL});
    parameters::offset->setRange({-50, 50, DECIBEL});
    parameters::samples->setRange({5, 1000, ""});
    parameters::maxSeconds->setRange({5, 600, "s"});
    parameters::maxSpread->setRange({0, 50, DECIBEL});
    parameters::maxDrift->setRange({0, 50, DECIBEL});
#define MRLRSIGNAL_ADD(variable, name, type, byDefault)                                            \
    signalLevelTest->addParameter(parameters::variable);
    MRLRSIGNAL_PARAMETERS(MRLRSIGNAL_ADD)
#undef MRLRSIGNAL_ADD
    signalLevelTest->setParameterCheck(&checkLevelParameters, tesk5::WrongParameters::REFUSED);
}
