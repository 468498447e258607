#include "ExampleModule.h"

#include <tesk5/DiagModule.h>
#include <tesk5/ModuleInfo.h>

namespace tesk5 {

const ModuleInfo& moduleInfo() {
    static constexpr const char* examplesOfRun[] = {"run --set SSID=Lab"};
    static const ModuleInfo info{"example", R"({
        "WEAK": "The signal of \"{Name}\" is {Strength} %.",
        "PLAIN": "Something happened."
    })",
                                 examplesOfRun};
    return info;
}

} // namespace tesk5

namespace fuzz {

namespace {

tesk5::TestResult pass(const tesk5::DiagDevice& /*device*/) {
    return tesk5::TestResult::PASS();
}

} // namespace

tesk5::Registry& registry() {
    using tesk5::DataType;
    using tesk5::DiagModule;
    tesk5::Registry& all = tesk5::Registry::instance();
    if (all.tests.empty()) {
        const tesk5::DeviceCapability wireless = tesk5::DeviceCapability::Wireless();
        DiagModule::createTest("Signal", wireless, &pass)
            ->addParameter(DiagModule::createParameter("SSID", DataType::STRING(), "", false, true))
            ->addParameter(
                DiagModule::createParameter("Limit", DataType::UINT32(), "0", false, true))
            ->addParameter(DiagModule::createParameter("Also", DataType::STRING(), "", true, true));
        DiagModule::createTest("Dialog", wireless, &pass)->setInteractive(true);
    }
    return all;
}

} // namespace fuzz
