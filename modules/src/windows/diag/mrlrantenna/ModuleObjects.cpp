// Creates every object of the module during static initialisation: the texts and events, the tests,
// the parameters, the application object, the signal-quality words. All of them are defined in this
// one file, because only within a file does the language fix the order.
#include "ModuleObjects.h"

#include "MRLrAntenna.h"

#include <MRLrAntennaApp.h> // the system's own

#include <nativewifi/Ssid.h>

using tesk5::DeviceCapability;
using tesk5::DiagModule;

namespace {

// Both tests are for wireless cards which Native Wifi can drive; mobile broadband and WiMAX cards
// call themselves wireless too, but have neither access points nor antennas to turn.
tesk5::Test* registerTest(const char* name, tesk5::Test::Function function, bool interactive) {
    return DiagModule::createTest(
               name, DeviceCapability::Wireless() | DeviceCapability::NetworkCard(), function)
        ->setEnumeratesOnlyOnce(false)
        ->setInteractive(interactive)
        ->addDevicePropertyExclusion("WirelessWAN", "")
        ->addDevicePropertyExclusion("WiMAX", "")
        ->addDevicePropertyRequirement("wlanAPISupported", "");
}

} // namespace

#define MRLRANTENNA_DEFINE_TEXT(variable, key)                                                     \
    namespace texts {                                                                              \
    tesk5::LocalizedString* const variable = DiagModule::createLocalizedString(key);               \
    }
#define MRLRANTENNA_DEFINE_EVENT(variable, key)                                                    \
    namespace events {                                                                             \
    tesk5::Event* const variable = DiagModule::createEvent(key);                                   \
    }
// Defaults are empty texts for the numbers too: an empty number reads as 0, which switches its
// threshold off.
#define MRLRANTENNA_DEFINE_PARAMETER(variable, name, type)                                         \
    namespace parameters {                                                                         \
    tesk5::Parameter* const variable =                                                             \
        DiagModule::createParameter(name, tesk5::DataType::type(), "", false, true);               \
    }

MRLRANTENNA_OBJECTS_BEFORE_TESTS(MRLRANTENNA_DEFINE_TEXT, MRLRANTENNA_DEFINE_EVENT)

namespace {
// The framework owns the test. The constant only gives its creation a place in the order.
[[maybe_unused]] const bool diversityTestRegistered =
    registerTest("DiversityTest", &DiversityTest, true)->setObstacle(diversityTestObstacle()) !=
    nullptr;
} // namespace

tesk5::Test* const signalStrengthTest = registerTest(
    "WirelessSignalStrengthVerificationTest", &WirelessSignalStrengthVerificationTest, false);

MRLRANTENNA_PARAMETERS(MRLRANTENNA_DEFINE_PARAMETER)

namespace {
// A name that no keyboard has, or that the tests read byte by byte, can be given as its bytes.
[[maybe_unused]] const bool ssidTakesBytes =
    parameters::ssid->setBytesAllowed(DOT11_SSID_MAX_LENGTH) != nullptr;
} // namespace

MRLRANTENNA_OBJECTS_BEFORE_APPLICATION(MRLRANTENNA_DEFINE_TEXT, MRLRANTENNA_DEFINE_EVENT)

CMRLrAntennaGUIApp theApp;

MRLRANTENNA_SIGNAL_QUALITY_WORDS(MRLRANTENNA_DEFINE_TEXT)
