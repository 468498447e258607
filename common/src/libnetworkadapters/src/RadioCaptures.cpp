#include <networkadapters/RadioCaptures.h>

#include <networkadapters/MachineCheck.h>
#include <networkadapters/NetworkAdapters.h>

#include <tesk5/RunIdentityJson.h>

#include <capture/Recording.h>
#include <capture/Replay.h>

#include <mrl/Unicode.h>

namespace networkadapters {

namespace {

using mrl::Json;
using tesk5::CapturedCommand;
using tesk5::DeviceCapability;
using tesk5::DiagDevice;
using tesk5::TeskString;
using tesk5::UnusableCapture;

Json jsonOf(const DiagDevice& device) {
    Json properties = Json::object();
    for (const auto& [name, value] : device.properties()) {
        properties[name.utf8()] = value.utf8();
    }
    return {{"name", device.name().utf8()},
            {"capabilities", device.capability().names()},
            {"properties", properties}};
}

Json jsonOf(const CapturedCommand& command) {
    Json run{{"module", command.module}, {"version", command.version},
             {"build", command.build},   {"command", command.command},
             {"tests", command.tests},   {"settings", Json::array()}};
    for (const tesk5::CapturedSetting& setting : command.settings) {
        run["settings"].push_back(
            {{"name", setting.name}, {"value", setting.value}, {"text", setting.isText}});
    }
    if (command.device) {
        run["device"] = *command.device;
    }
    if (command.devices) {
        Json& devices = run["devices"] = Json::array();
        for (const DiagDevice& device : *command.devices) {
            devices.push_back(jsonOf(device));
        }
    }
    run.update(tesk5::identityJson(command.identity));
    return run;
}

DiagDevice deviceOf(const Json& value) {
    DeviceCapability capabilities;
    for (const Json& name : value.at("capabilities")) {
        const std::optional<DeviceCapability> known =
            DeviceCapability::fromName(name.get<std::string>());
        if (!known) {
            throw UnusableCapture(1, "there is no capability " + name.dump());
        }
        capabilities = capabilities | *known;
    }
    DiagDevice::Properties properties;
    for (const auto& [name, text] : value.at("properties").items()) {
        properties.emplace_back(TeskString(name), TeskString(text.get<std::string>()));
    }
    return {TeskString(value.at("name").get<std::string>()), capabilities, std::move(properties)};
}

CapturedCommand commandOf(const Json& run) {
    CapturedCommand command{.module = run.at("module").get<std::string>(),
                            .version = run.at("version").get<std::string>(),
                            .build = run.at("build").get<std::string>(),
                            .command = run.at("command").get<std::string>(),
                            .tests = run.at("tests").get<std::vector<std::string>>(),
                            .settings = {},
                            .device = {},
                            .devices = {},
                            .identity = tesk5::identityOf(run)};
    const std::string& identifier = command.identity.identifier;
    if (!identifier.empty() && !tesk5::isRunIdentifier(identifier)) {
        throw UnusableCapture(1, "\"runIdentifier\" is none");
    }
    for (const Json& setting : run.at("settings")) {
        command.settings.push_back({setting.at("name").get<std::string>(),
                                    setting.at("value").get<std::string>(),
                                    setting.at("text").get<bool>()});
    }
    if (run.contains("device")) {
        command.device = run.at("device").get<std::string>();
    }
    if (run.contains("devices")) {
        command.devices.emplace();
        for (const Json& device : run.at("devices")) {
            command.devices->push_back(deviceOf(device));
        }
    }
    return command;
}

class RadioRecording final : public tesk5::CaptureRecording {
public:
    RadioRecording(const std::filesystem::path& file, const CapturedCommand& command,
                   bool hideNames)
        : m_recording(file, jsonOf(command), hideNames), m_adapters([this] {
              std::vector<NetworkAdapter> adapters = systemNetworkAdapters();
              capture::Adapters noted;
              for (const NetworkAdapter& adapter : adapters) {
                  noted.push_back({.name = mrl::toUtf8(adapter.name.view()),
                                   .guid = adapter.guid,
                                   .mobileBroadband = adapter.mobileBroadband});
              }
              m_recording.adapters(noted);
              return adapters;
          }) {}

    void end(int exitValue) override { m_recording.end(exitValue); }
    bool complete() const override { return m_recording.complete(); }

private:
    capture::Recording m_recording;
    ScopedAdapters m_adapters;
};

class RadioReplay final : public tesk5::CaptureReplay {
public:
    explicit RadioReplay(capture::Capture capture)
        : m_command(commandOf(capture.run)), m_capture(std::move(capture)) {}

    const CapturedCommand& command() const override { return m_command; }
    void begin() override {
        m_noMachine.emplace(std::filesystem::path());
        m_replay.emplace(std::move(m_capture));
        m_adapters.emplace([this] {
            std::vector<NetworkAdapter> adapters;
            for (const capture::Adapter& adapter : m_replay->adapters()) {
                adapters.push_back({mrl::String(mrl::toUtf16(adapter.name).c_str()), adapter.guid,
                                    adapter.mobileBroadband});
            }
            return adapters;
        });
    }
    std::optional<tesk5::CaptureDifference> difference() const override {
        const std::optional<capture::Difference> found =
            m_replay ? m_replay->difference() : std::nullopt;
        if (!found) {
            return std::nullopt;
        }
        return tesk5::CaptureDifference{found->line, found->expected, found->asked};
    }

private:
    const CapturedCommand m_command;
    capture::Capture m_capture;
    std::optional<ScopedMachine> m_noMachine; // the capture is of another one
    std::optional<capture::Replay> m_replay;
    std::optional<ScopedAdapters> m_adapters;
};

std::unique_ptr<tesk5::CaptureRecording> record(const std::filesystem::path& file,
                                                const CapturedCommand& command, bool hideNames) {
    return std::make_unique<RadioRecording>(file, command, hideNames);
}

std::unique_ptr<tesk5::CaptureReplay> replay(std::string_view text) {
    try {
        return std::make_unique<RadioReplay>(capture::readCapture(text));
    } catch (const capture::CaptureError& error) {
        throw UnusableCapture(error.line, error.what());
    } catch (const Json::exception& error) {
        throw UnusableCapture(1, error.what()); // the head's "run"
    }
}

} // namespace

const tesk5::CaptureSupport& radioCaptures() {
    static constexpr tesk5::CaptureSupport support{&record, &replay, capture::LARGEST_FILE};
    return support;
}

} // namespace networkadapters
