// A test of the module, as it is registered.
#pragma once

#include <tesk5/DiagDevice.h>
#include <tesk5/Event.h>
#include <tesk5/Finding.h>
#include <tesk5/Parameter.h>
#include <tesk5/TestResult.h>

#include <vector>

namespace tesk5 {

/// Why a device does not suit a test: the key of a phrase for people, and what fills it.
struct Mismatch {
    TeskString key;
    Event::Variables variables;
};

/// Whether the parameters of a test, which have the values that were given, suit it: findings as of
/// an examination. Makes no call to the system and does not wait. \param complete whether what a
/// run needs and was not given is a problem too
using ParameterCheck = Findings (*)(bool complete);

/// What becomes of a run whose parameters a check finds wrong.
enum class WrongParameters {
    LEFT_TO_TEST, ///< it begins, and its test says so
    REFUSED,      ///< nothing runs: the first problem is shown as that of wrong input
};

/// A test function with the conditions for running it. Made with DiagModule::createTest, owned by
/// the framework, alive until the process ends. The setters return the test itself, for chains.
class Test {
public:
    using Function = TestResult (*)(const DiagDevice&);

    /// A condition on one property of a device. An empty value means "has the property at all",
    /// another value means "has it with exactly this value".
    struct PropertyCondition {
        TeskString property;
        TeskString value;

        bool holdsFor(const DiagDevice& device) const;
    };

    Test(TeskString name, DeviceCapability capability, Function run);
    Test(const Test&) = delete;
    Test& operator=(const Test&) = delete;

    /// With true, the test runs for the first matching device only.
    Test* setEnumeratesOnlyOnce(bool once);
    /// An interactive test runs only when it is named.
    Test* setInteractive(bool interactive);
    /// The test does not run for devices that meet this condition.
    Test* addDevicePropertyExclusion(const TeskString& property, const TeskString& value);
    /// The test runs only for devices that meet this condition.
    Test* addDevicePropertyRequirement(const TeskString& property, const TeskString& value);
    Test* addParameter(const Parameter* parameter);
    /// The check is asked by the command doctor, by run --check and, with REFUSED, before a run
    /// with this test; null for none.
    Test* setParameterCheck(ParameterCheck check, WrongParameters wrong);
    /// Another default of `parameter`, one of the test's, while this test runs.
    /// Failure: throws TeskException for a text that the parameter does not accept
    Test* setDefault(Parameter* parameter, const TeskString& text);
    /// With true, the test runs only when it is named, as an interactive one does.
    Test* setOnlyWhenNamed(bool onlyWhenNamed);
    /// With the key of a reason, this system cannot run the test: no device suits it, and the text
    /// under that key says why; with null it can.
    Test* setObstacle(const char* reason);

    const TeskString& name() const { return m_name; }
    const DeviceCapability& capability() const { return m_capability; }
    Function function() const { return m_function; }
    bool enumeratesOnlyOnce() const { return m_enumeratesOnlyOnce; }
    bool interactive() const { return m_interactive; }
    const std::vector<PropertyCondition>& exclusions() const { return m_exclusions; }
    const std::vector<PropertyCondition>& requirements() const { return m_requirements; }
    const std::vector<const Parameter*>& parameters() const { return m_parameters; }
    /// What `check` given to setParameterCheck() finds; nothing without one.
    Findings parameterFindings(bool complete) const;
    bool refusesWrongParameters() const { return m_wrongParameters == WrongParameters::REFUSED; }
    /// What `parameter` has without a value given for this test.
    const TeskString& defaultOf(const Parameter& parameter) const;
    /// Whether the test runs only when it is named.
    bool onlyWhenNamed() const { return m_onlyWhenNamed || m_interactive; }
    /// The key given to setObstacle(); null for a test that this system can run.
    const char* obstacle() const { return m_obstacle; }

    /// Puts the test's own defaults in force while it exists. The thread of the run.
    class OwnDefaults {
    public:
        explicit OwnDefaults(const Test& test);
        ~OwnDefaults();
        OwnDefaults(const OwnDefaults&) = delete;
        OwnDefaults& operator=(const OwnDefaults&) = delete;

    private:
        const Test& m_test;
    };

    /// Every reason why `device` does not match; empty when it matches.
    std::vector<Mismatch> mismatches(const DiagDevice& device) const;

private:
    TeskString m_name;
    DeviceCapability m_capability;
    Function m_function;
    bool m_enumeratesOnlyOnce = false;
    bool m_interactive = false;
    bool m_onlyWhenNamed = false;
    std::vector<PropertyCondition> m_exclusions;
    std::vector<PropertyCondition> m_requirements;
    std::vector<const Parameter*> m_parameters;
    ParameterCheck m_parameterCheck = nullptr;
    WrongParameters m_wrongParameters = WrongParameters::LEFT_TO_TEST;
    std::vector<std::pair<Parameter*, TeskString>> m_defaults;
    const char* m_obstacle = nullptr;
};

} // namespace tesk5
