#include "FrameworkTest.h"

#include <tesk5/Language.h>
#include <tesk5/ModuleInfo.h>

#include <mrl/Logger.h>

#include <algorithm>
#include <array>

namespace {

// A command of the module: its arguments and the version of its run, and their number.
int echo(const tesk5::CommandCall& call, tesk5::RunContext& context) {
    for (const std::string& argument : call.arguments) {
        context.output << argument << " ";
    }
    context.output << context.version.text() << "\n";
    return static_cast<int>(call.arguments.size());
}

// A command with all that the framework reads for it: options, parameters and devices.
int tell(const tesk5::CommandCall& call, tesk5::RunContext& context) {
    for (const auto& [name, value] : call.options) {
        context.output << name << "=" << value << "\n";
    }
    for (const tesk5::Parameter& parameter : context.registry.parameters) {
        context.output << parameter.name().utf8() << "=" << parameter.value().valueString().utf8()
                       << "\n";
    }
    for (const tesk5::DiagDevice& device : call.devices) {
        context.output << "on " << device.name().utf8() << "\n";
    }
    if (call.options.contains("--refuse")) {
        throw tesk5::BadInput{"--refuse is refused; leave it out"};
    }
    return 0;
}

} // namespace

namespace tesk5 {

const ModuleInfo& moduleInfo() {
    static const CommandOption format = {.name = "--format",
                                         .argument = "csv|jsonl",
                                         .help = "PLAIN",
                                         .example = "tell --format csv",
                                         .choices = {"csv", "jsonl"}};
    static const ModuleCommand commands[] = {
        {"echo", "[WORD...]", "PLAIN", {"echo one two"}, &echo},
        {"bare", "", "PLAIN", {"bare"}, &echo, {format}},
        {.name = "tell",
         .arguments = "",
         .help = "PLAIN",
         .examples = {"tell", "tell --seconds 5"},
         .run = &tell,
         .options =
             {format,
              {.name = "--seconds",
               .argument = "N",
               .help = "PLAIN",
               .example = "tell --seconds 5",
               .range = NumberRange{1, 60, "s"}},
              {.name = "--word", .argument = "TEXT", .help = "PLAIN", .example = "tell --word Lab"},
              {.name = "--refuse",
               .argument = nullptr,
               .help = "PLAIN",
               .example = "tell --refuse"}},
         .parameters = {"SSID"},
         .test = "Fine"},
    };
    static constexpr const char* examplesOfRun[] = {
        "run --set SSID=Lab --set FailingSignalStrength=20",
        "run --config station.toml --json report.json",
        "run DiversityTest --device intel",
    };
    static constexpr const char* limitParameters[] = {"Warning", "Failing"};
    static const ModuleInfo info{
        .name = "example",
        .builtInTexts = R"({
            "WEAK": "The signal of {Name} is {Strength}%.",
            "PLAIN": "Something happened.",
            "SERVICE_ANSWERS": "The service answers.",
            "SERVICE_STOPPED": "The service does not run (error {Error}).",
            "NO_DEVICE": "There is no device for {Tests}.",
            "LIMIT_REACHED": "{Device} is weak."
        })",
        .examplesOfRun = examplesOfRun,
        .exampleOfSet = "--set SSID=Lab --set WarningSignalStrength=40",
        .examine = [](const auto& device, auto depth,
                      auto& findings) { test::g_module.examine(device, depth, findings); },
        .devices = [] { return test::g_module.devices; },
        .checkService = [] { return test::g_module.service; },
        .checkMachine = [] { return test::g_module.machine; },
        .noDevice = "NO_DEVICE",
        .limitReached = "LIMIT_REACHED",
        .commands = commands,
        .limitParameters = limitParameters,
        .limitsName = "Limits",
        .calibrationFile = "Calibration",
        .calibration =
            [](const std::string& file) {
                return InForce{.name = file,
                               .version = {},
                               .sha256 = "12",
                               .source = InForce::Source::standard};
            },
    };
    return info;
}

} // namespace tesk5

namespace test {

namespace {

// The framework takes plain functions; each slot is one, and looks up the body to run.
constexpr std::size_t SLOTS = 8;
std::array<std::function<TestResult(const DiagDevice&)>, SLOTS> g_bodies;

template <std::size_t Slot>
TestResult callBody(const DiagDevice& device) {
    return g_bodies[Slot](device);
}

constexpr tesk5::Test::Function functions[SLOTS] = {
    callBody<0>, callBody<1>, callBody<2>, callBody<3>,
    callBody<4>, callBody<5>, callBody<6>, callBody<7>,
};

} // namespace

std::string reasonOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const TeskException& exception) {
        return exception.toString().getUTF8String().bytes();
    }
    return {};
}

FrameworkTest::FrameworkTest() {
    g_module = {};
    m_context.readPc = [] { return g_module.pc; };
    DiagModule::setVersion(6, 5, "000000001");
    tesk5::Language::current().set("en");
    setDevices(1);
}

FrameworkTest::~FrameworkTest() {
    mrl::LogFactory::setSink(nullptr);
    mrl::LogFactory::setPriority(mrl::LogFactory::OFF);
}

tesk5::Test* FrameworkTest::registerTest(const char* name, Body body) {
    const std::size_t slot = registry().tests.size();
    g_bodies.at(slot) = std::move(body);
    return DiagModule::createTest(name, tesk5::DeviceCapability::Wireless(), functions[slot]);
}

tesk5::Test* FrameworkTest::registerStopping(const char* name) {
    return registerTest(name, [](const DiagDevice&) {
        tesk5::RunContext::current().stopRequest.raise();
        return TestResult::PASS();
    });
}

tesk5::Parameter* FrameworkTest::optionalParameter(const char* name, const DataType& type) {
    return DiagModule::createParameter(name, type, "", false, true);
}

tesk5::Test* FrameworkTest::registerTest(const char* name, TestResult result) {
    return registerTest(name, [result](const DiagDevice&) { return result; });
}

int FrameworkTest::start(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"--devices", file("devices.json")});
    return startBare(arguments);
}

int FrameworkTest::startBare(const std::vector<std::string>& arguments) {
    std::vector<const char*> argv = {"example.k5x"};
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    DiagModule::setCmdLineArgs(static_cast<int>(argv.size()), argv.data());
    return DiagModule::start();
}

void FrameworkTest::setDevices(const std::string& json) {
    fileWith("devices.json", json);
}

void FrameworkTest::setDevices(int count) {
    std::string json;
    for (int i = 1; i <= count; ++i) {
        json += (json.empty() ? "" : ",");
        json += R"({"name": "Card )" + std::to_string(i) + R"(", "capabilities": ["Wireless"]})";
    }
    setDevices("[" + json + "]");
}

void FrameworkTest::setDevicesOfTwoKinds() {
    setDevices(R"([{"name": "Ethernet", "capabilities": ["NetworkCard"]},
                   {"name": "Card", "capabilities": ["Wireless"]},
                   {"name": "Bluetooth", "capabilities": ["NetworkCard"]},
                   {"name": "Modem", "capabilities": ["NetworkCard"]}])");
}

std::string FrameworkTest::fileWith(const std::string& name, const std::string& text) const {
    std::ofstream(mrl::System::path(file(name)), std::ios::binary) << text;
    return file(name);
}

std::vector<std::string> FrameworkTest::filesThere() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.path())) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

namespace {

// On Windows below the current folder, on Linux beside the folder of this program.
std::filesystem::path ownResources() {
    return mrl::System::resourceFolders(tesk5::moduleInfo().name).back();
}

} // namespace

OwnTexts::OwnTexts() {
    std::filesystem::current_path(mrl::System::path(file(".")));
}

OwnTexts::~OwnTexts() {
    tesk5::Language::current().set("en");
    std::filesystem::remove_all(ownResources());
    std::filesystem::current_path(m_before);
}

void OwnTexts::write(const std::string& part, const std::string& tag,
                     const std::string& text) const {
    const std::filesystem::path folder = ownResources() / part / "texts";
    std::filesystem::create_directories(folder);
    std::ofstream(folder / (tag + ".json"), std::ios::binary) << text;
}

} // namespace test
