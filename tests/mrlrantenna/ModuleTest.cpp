#include "ModuleTest.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace test {

void ModuleTest::NotesEvents::onEvent(const tesk5::RaisedEvent& event) {
    Journal::note(std::string("event ") + tesk5::severityName(event.severity) + " " +
                  event.key.utf8());
}

void ModuleTest::NotesEvents::onMeasurement(const tesk5::Measurement& measurement) {
    Journal::note("measurement " + measurement.name.utf8());
}

void ModuleTest::NotesEvents::onSurvey(const tesk5::Survey& survey) {
    Journal::note("survey " + survey.name.utf8());
}

void ModuleTest::NotesEvents::onProgress(const tesk5::Progress& progress) {
    Journal::note("progress " + progress.key.utf8() +
                  (progress.longestSeconds
                       ? " " + std::to_string(std::lround(*progress.longestSeconds)) + " s"
                       : ""));
}

ModuleTest::ModuleTest() : m_recorder(&m_notesEvents) {
    startRadio(radiosim::Scenario{});
}

ModuleTest::~ModuleTest() = default;

void ModuleTest::TearDown() {
    EXPECT_THAT(m_radio->unfiredFaults(), testing::IsEmpty());
    EXPECT_EQ(m_radio->badFrees(), 0U);
}

radiosim::Engine& ModuleTest::startRadio(radiosim::Scenario scenario) {
    m_radio.reset();
    radiosim::Engine& radio = m_radio.emplace(std::move(scenario));
    radio.onCall([](const radiosim::Call& call) {
        Journal::note("call " + call.function + " = " + std::to_string(call.result));
    });
    return radio;
}

radiosim::Engine& ModuleTest::startRadio(std::vector<radiosim::AccessPoint> accessPoints) {
    radiosim::Scenario scenario;
    scenario.interfaces.front().accessPoints = std::move(accessPoints);
    return startRadio(std::move(scenario));
}

tesk5::DiagDevice ModuleTest::device() {
    return deviceWith(
        {{"DeviceSystemName",
          tesk5::TeskString("\\DEVICE\\{" + std::string(radiosim::FIRST_INTERFACE) + "}")}});
}

tesk5::DiagDevice ModuleTest::deviceWith(tesk5::DiagDevice::Properties properties) {
    return tesk5::DiagDevice("Simulated Wireless Adapter",
                             tesk5::DeviceCapability::Wireless() |
                                 tesk5::DeviceCapability::NetworkCard(),
                             std::move(properties));
}

std::vector<std::string> ModuleTest::raisedKeys() const {
    std::vector<std::string> keys;
    for (const tesk5::RaisedEvent& event : raised()) {
        keys.push_back(event.key.utf8());
    }
    return keys;
}

std::vector<std::string> ModuleTest::raisedLines() const {
    std::vector<std::string> lines;
    std::transform(raised().begin(), raised().end(), std::back_inserter(lines), text);
    return lines;
}

std::string text(const tesk5::RaisedEvent& event) {
    std::string line = std::string(tesk5::severityName(event.severity)) + " " + event.key.utf8() +
                       " " + event.file + ":" + std::to_string(event.line);
    for (const auto& [name, value] : event.variables) {
        const std::string shown = value.valueString().utf8();
        const bool isText = value.type() == tesk5::DataType::STRING();
        line += " " + name.utf8() + "=" + (isText ? "\"" + shown + "\"" : shown);
    }
    return line;
}

} // namespace test
