// Creates the objects during static initialisation, in one file, because only within a file does
// the language fix the order.
#include <levels/ModuleObjects.h>

#include <levels/AntennaChainTest.h>
#include <levels/SignalLevelTest.h>
#include <levels/TargetParameters.h>
#include <readings/ChainSource.h>

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
tesk5::Test* createTest(const char* name, tesk5::Test::Function function) {
    return DiagModule::createTest(
               name, DeviceCapability::Wireless() | DeviceCapability::NetworkCard(), function)
        ->setEnumeratesOnlyOnce(false)
        ->setInteractive(false)
        ->addDevicePropertyExclusion("WirelessWAN", "")
        ->addDevicePropertyExclusion("WiMAX", "")
        ->addDevicePropertyRequirement("wlanAPISupported", "");
}

tesk5::Test* const signalLevelTest = createTest("SignalLevelTest", &levels::SignalLevelTest);
// Most drivers tell no chains: a run that names no test is not to end with that.
tesk5::Test* const antennaChainTest =
    createTest("AntennaChainTest", &levels::AntennaChainTest)
        ->setOnlyWhenNamed(true)
        ->setObstacle(readings::ChainSource::isKnownToSystem() ? nullptr
                                                               : "CHAINS_NOT_ON_THIS_SYSTEM");

} // namespace

void initializeSignalModule() {
    parameters::ssid->setBytesAllowed(DOT11_SSID_MAX_LENGTH);
    parameters::band->setChoices({"2.4", "5", "6"});
    for (tesk5::Parameter* const level : {parameters::warningLevel, parameters::failingLevel}) {
        level->setRange({-110, -10, "dBm"})->setReasonForOtherSign("LEVEL_WITHOUT_SIGN");
    }
    parameters::guardBand->setRange({0, 20, DECIBEL});
    parameters::offset->setRange({-50, 50, DECIBEL});
    parameters::calibration->setNamesFile();
    parameters::unusableCalibration->setChoices({"refuse", "warn"});
    parameters::samples->setRange({5, 1000, ""});
    parameters::maxSeconds->setRange({5, 600, "s"});
    parameters::maxSpread->setRange({0, 50, DECIBEL});
    parameters::maxDrift->setRange({0, 50, DECIBEL});
    parameters::chains->setRange({1, 8, ""});
    parameters::maxImbalance->setRange({3, 60, DECIBEL});
    for (const tesk5::Parameter* const parameter :
         {parameters::ssid, parameters::bssid, parameters::band, parameters::warningLevel,
          parameters::failingLevel, parameters::guardBand, parameters::offset,
          parameters::calibration, parameters::station, parameters::unusableCalibration,
          parameters::samples, parameters::maxSeconds, parameters::maxSpread, parameters::maxDrift,
          parameters::limits}) {
        signalLevelTest->addParameter(parameter);
    }
    for (const tesk5::Parameter* const parameter :
         {parameters::ssid, parameters::bssid, parameters::band, parameters::chains,
          parameters::maxImbalance, parameters::samples, parameters::maxSeconds}) {
        antennaChainTest->addParameter(parameter);
    }
    antennaChainTest->setDefault(parameters::samples, "16");
    signalLevelTest->setParameterCheck(&levels::checkLevelParameters,
                                       tesk5::WrongParameters::REFUSED);
    antennaChainTest->setParameterCheck(&levels::targetFindings, tesk5::WrongParameters::REFUSED);
}
