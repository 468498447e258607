// The environment of every test of the module: a virtual clock, a captured log, the events raised
// and a simulated radio. All four note what happens in the Journal of a test that has one.
#pragma once

#include <support/CapturedLog.h>
#include <support/Journal.h>
#include <support/VirtualClock.h>

#include <radiosim/Engine.h>

#include <tesk5/DiagDevice.h>
#include <tesk5/TestRecorder.h>

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

namespace test {

/// The logger names of the module.
inline constexpr const char* MODULE_LOGGER = "mrlrantenna";
inline constexpr const char* DEVICE_LOGGER = "mrlrnetwork.WirelessDevice";

class ModuleTest : public testing::Test {
protected:
    ModuleTest();
    ~ModuleTest() override;
    /// A planned fault that never fired makes a test say less than it claims.
    void TearDown() override;

    /// Starts a radio environment; the previous one ends. Its calls are noted in the Journal unless
    /// the test sets an onCall() hook of its own.
    radiosim::Engine& startRadio(radiosim::Scenario scenario);
    /// One interface that sees `accessPoints`.
    radiosim::Engine& startRadio(std::vector<radiosim::AccessPoint> accessPoints);
    radiosim::Engine& radio() { return *m_radio; }
    const radiosim::Engine& radio() const { return *m_radio; }

    /// The device of the scenario's first interface, as the framework hands it to a test.
    static tesk5::DiagDevice device();
    /// A device with these properties.
    static tesk5::DiagDevice deviceWith(tesk5::DiagDevice::Properties properties);

    /// The texts logged by `logger`, which is one of the two names above.
    std::vector<std::string> logged(const char* logger) const { return m_log.texts(logger); }
    CapturedLog& log() { return m_log; }
    VirtualClock& clock() { return m_clock; }
    const std::vector<tesk5::RaisedEvent>& raised() const { return m_recorder.events(); }
    const std::vector<tesk5::Measurement>& measurements() const {
        return m_recorder.measurements();
    }
    const std::vector<tesk5::Survey>& surveys() const { return m_recorder.surveys(); }
    bool adviceRequested() const { return m_recorder.adviceRequested(); }
    /// The keys of the events raised, in order.
    std::vector<std::string> raisedKeys() const;
    /// The events raised as lines, as text() writes them.
    std::vector<std::string> raisedLines() const;

private:
    class NotesEvents final : public tesk5::TestObserver {
        void onEvent(const tesk5::RaisedEvent& event) override;
        void onMeasurement(const tesk5::Measurement& measurement) override;
        void onSurvey(const tesk5::Survey& survey) override;
        void onProgress(const tesk5::Progress& progress) override;
    };

    VirtualClock m_clock;
    CapturedLog m_log;
    NotesEvents m_notesEvents;
    tesk5::TestRecorder m_recorder;
    std::optional<radiosim::Engine> m_radio;
};

/// The event as one line: `error FAILING_SIGNAL_STRENGTH_DETECTED file:line SSIDName="Lab"
/// FailingSignalStrength=20`.
std::string text(const tesk5::RaisedEvent& event);

} // namespace test
