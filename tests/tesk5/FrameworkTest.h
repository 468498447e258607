// The fixture of the framework's tests: an empty run context, a virtual clock, and a console whose
// output is captured.
#pragma once

#include <support/CapturedStream.h>
#include <support/TemporaryFolder.h>
#include <support/VirtualClock.h>

#include <tesk5/DiagModule.h>
#include <tesk5/ModuleInfo.h>
#include <tesk5/RunContext.h>
#include <tesk5/TeskException.h>

#include <gmock/gmock.h>

#include <exception>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace test {

using tesk5::DataType;
using tesk5::DeviceCapability;
using tesk5::DiagDevice;
using tesk5::DiagModule;
using tesk5::Measurement;
using tesk5::Severity;
using tesk5::TeskException;
using tesk5::TestResult;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// The text of the TeskException that `action` throws; else the empty text.
std::string reasonOf(const std::function<void()>& action);

/// What the module answers during a test; set anew for each.
struct ModuleAnswers {
    std::function<void(const DiagDevice&, tesk5::ExaminationDepth, tesk5::Findings&)> examine =
        [](const auto&...) {};
    tesk5::Finding service{"SERVICE_ANSWERS", true, {}};
    tesk5::Findings machine;
    tesk5::DeviceList devices; ///< of this PC
    std::optional<tesk5::PcIdentity> pc;
};
inline ModuleAnswers g_module;

class FrameworkTest : public testing::Test {
protected:
    using Body = std::function<TestResult(const DiagDevice&)>;

    FrameworkTest();
    ~FrameworkTest() override;

    /// Registers a test for wireless devices that does `body`; at most eight a test case.
    static tesk5::Test* registerTest(const char* name, Body body);
    /// One that only returns `result`.
    static tesk5::Test* registerTest(const char* name, TestResult result);
    /// One that throws `exception`.
    template <typename Exception>
    static tesk5::Test* registerThrowing(const char* name, Exception exception) {
        return registerTest(
            name, [failure = std::make_exception_ptr(exception)](const DiagDevice&) -> TestResult {
                std::rethrow_exception(failure);
            });
    }
    /// One during which a stop is requested, as by Ctrl+C, and that passes.
    static tesk5::Test* registerStopping(const char* name);
    /// A parameter that may be left out.
    static tesk5::Parameter* optionalParameter(const char* name,
                                               const DataType& type = DataType::STRING());

    /// Runs the module with these arguments, on devices "Card 1", "Card 2", ... unless others are
    /// set.
    int start(std::vector<std::string> arguments);
    /// The same with exactly these arguments.
    static int startBare(const std::vector<std::string>& arguments);

    /// Sets the devices of start(), as the JSON of a device file.
    void setDevices(const std::string& json);
    /// Sets `count` wireless devices.
    void setDevices(int count);
    /// Sets the wireless device "Card" among "Ethernet", "Bluetooth" and "Modem", which are not.
    void setDevicesOfTwoKinds();

    /// Path of a file in a folder of this test's own, with `text` in it if there is some.
    std::string file(const std::string& name) const { return m_folder.file(name); }
    std::string fileWith(const std::string& name, const std::string& text) const;
    std::vector<std::string> filesThere() const;

    /// What the tests, parameters and so on of this test are registered in.
    static tesk5::Registry& registry() { return tesk5::RunContext::current().registry; }

    const std::string& output() const { return m_output.text(); }
    const std::string& errors() const { return m_errors.text(); }
    VirtualClock& clock() { return m_clock; }
    void forgetOutput() {
        m_output.clear();
        m_errors.clear();
    }

private:
    tesk5::Registry m_registry;
    tesk5::RunContext m_context{m_registry};
    tesk5::RunContext::Scope m_scope{m_context};
    VirtualClock m_clock;
    TemporaryFolder m_folder;
    CapturedStream m_output{mrl::cout};
    CapturedStream m_errors{mrl::cerr};
};

/// A framework test that can add languages. Its folder is the current one.
class OwnTexts : public FrameworkTest {
protected:
    OwnTexts();
    ~OwnTexts() override;

    /// A file of texts where the program looks for them.
    void write(const std::string& part, const std::string& tag, const std::string& text) const;

private:
    std::filesystem::path m_before = std::filesystem::current_path();
};

} // namespace test
