// Captures of many environments: the supplied ones, and those that a generator makes.
#include "CapturedProgram.h"

#include <radiosim/Scenario.h>

#include <mrl/Json.h>
#include <mrl/Unicode.h>

#include <random>

namespace {

using test::CapturedProgram;
using test::Seen;

constexpr std::uint32_t GENERATED = 500;
constexpr std::uint32_t HIDDEN = 100;

// Environments and command lines; the same number gives the same ones.
class Generator {
public:
    /// \param changes whether networks come and go
    explicit Generator(std::uint32_t seed, bool changes = true)
        : m_random(seed), m_changes(changes) {}

    radiosim::Scenario scenario() {
        radiosim::Scenario made;
        made.interfaces = {interface(radiosim::FIRST_INTERFACE)};
        if (chance(20)) {
            made.interfaces.push_back(interface("11111111-2222-4333-8444-555555555555"));
        } else if (chance(3)) {
            made.interfaces.clear();
        }
        if (chance(10)) {
            made.serviceVersion = pick(3);
        }
        for (std::uint32_t i = pick(4) / 2; i > 0; --i) {
            made.faults.push_back(fault());
        }
        for (std::uint32_t i = pick(3); i > 0 && !made.interfaces.empty(); --i) {
            made.notifications.push_back({.at = radiosim::Milliseconds(pick(20000)),
                                          .source = chance(50) ? 8U : 16U,
                                          .code = pick(12),
                                          .data = std::vector<std::uint8_t>(pick(20), 0x5A)});
        }
        return made;
    }

    std::vector<std::string> command() {
        if (chance(10)) {
            return {"list"};
        }
        std::vector<std::string> arguments = {chance(15) ? "doctor" : "run"};
        std::string name = names()[pick(4)];
        if (name == "Caf\xE9 Nord") {
            name = "Caf\xC3\xA9 Nord"; // as it is typed
        }
        if (chance(20)) {
            name = " " + name + " ";
        }
        if (chance(20)) {
            name = mrl::toUtf8(mrl::foldedCase(mrl::toUtf16(name)));
        }
        arguments.insert(arguments.end(), {"--set", "SSID=" + name});
        arguments.insert(arguments.end(),
                         {"--set", "WarningSignalStrength=" + std::to_string(pick(110))});
        arguments.insert(arguments.end(),
                         {"--set", "FailingSignalStrength=" + std::to_string(pick(110))});
        if (chance(15)) {
            arguments.insert(arguments.end(), {"--device", chance(70) ? "aDAPter" : "none"});
        }
        return arguments;
    }

    /// The names in the air; some contain others.
    static const std::vector<std::string>& names() {
        static const std::vector<std::string> all = {"Lab",
                                                     "Kantine",
                                                     "Halle 3",
                                                     "Caf\xE9 Nord",
                                                     "Lab-5G",
                                                     "lab",
                                                     "MyLabor",
                                                     "kantine-gast",
                                                     "B\xC3\xBCro",
                                                     "B\xC3\xBCro 2",
                                                     "\xD0\x9B\xD0\xB0\xD0\xB1\xD0\xB0",
                                                     "7590",
                                                     "FRITZ!Box 7590",
                                                     "Nord",
                                                     "   Vorne   ",
                                                     "\xE5\xAE\x9E\xE9\xAA\x8C\xE5\xAE\xA4",
                                                     "Zimmer-am-Ende-des-langen-Flurs"};
        return all;
    }

private:
    std::uint32_t pick(std::uint32_t count) {
        return std::uniform_int_distribution<std::uint32_t>(0, count - 1)(m_random);
    }
    bool chance(std::uint32_t percent) { return pick(100) < percent; }

    radiosim::Interface interface(const char* guid) {
        radiosim::Interface made{.guid = guid,
                                 .description = chance(50) ? "Simulated Wireless Adapter"
                                                           : "AX201 Netzwerkadapter"};
        made.phys = {{.software = chance(95) ? 1 : static_cast<std::int32_t>(pick(4)),
                      .hardware = chance(95) ? 1 : static_cast<std::int32_t>(pick(4))}};
        made.scanDuration = radiosim::Milliseconds(pick(9000));
        made.scanEnd = static_cast<radiosim::ScanEnd>(pick(3));
        for (std::uint32_t i = pick(7); i > 0; --i) {
            made.accessPoints.push_back(accessPoint());
        }
        // Without the name that is looked for, the search takes its thirty seconds.
        if (chance(96)) {
            for (std::size_t i = 0; i < 4; ++i) {
                made.accessPoints.insert(made.accessPoints.begin(),
                                         {.ssid = names()[i], .signal = pick(101)});
            }
        }
        if (chance(40) && !made.accessPoints.empty()) {
            made.connection = radiosim::Connection{
                .ssid =
                    made.accessPoints[pick(static_cast<std::uint32_t>(made.accessPoints.size()))]
                        .ssid};
        }
        return made;
    }

    radiosim::AccessPoint accessPoint() {
        radiosim::AccessPoint made{.ssid =
                                       names()[pick(static_cast<std::uint32_t>(names().size()))],
                                   .hidden = chance(5),
                                   .signal = pick(101)};
        if (chance(30)) {
            made.signal =
                radiosim::Signal(radiosim::Signal::Walk{.start = pick(101),
                                                        .min = 0,
                                                        .max = 100,
                                                        .step = 9,
                                                        .interval = radiosim::Milliseconds(70),
                                                        .seed = pick(1000)});
        }
        if (chance(20)) {
            made.profile = made.ssid;
        }
        if (chance(15)) {
            made.connectable = false;
            made.reason = 0x28002;
        }
        if (m_changes && chance(10)) {
            made.visible = radiosim::Visible::AFTER_SCAN;
        }
        if (m_changes && chance(10)) {
            made.from = radiosim::Milliseconds(pick(16000));
        }
        return made;
    }

    radiosim::Fault fault() {
        constexpr const char* functions[] = {
            "WlanOpenHandle",  "WlanEnumInterfaces",          "WlanQueryInterface",
            "WlanScan",        "WlanGetAvailableNetworkList", "WlanGetNetworkBssList",
            "UuidFromStringW", "WlanRegisterNotification",    "WlanReasonCodeToString"};
        constexpr std::uint32_t codes[] = {5, 6, 8, 87, 1062, 5023, 0x80342002, 4711};
        radiosim::Fault made{.function = functions[pick(std::size(functions))], .nth = pick(6)};
        if (chance(30)) {
            made.delay = radiosim::Milliseconds(pick(700));
        }
        if (chance(80) || made.delay.count() == 0) {
            made.code = codes[pick(std::size(codes))];
        }
        return made;
    }

    std::mt19937 m_random;
    const bool m_changes;
};

class CaptureProperties : public CapturedProgram {
protected:
    // What one sees of a command besides its log, with or without a report.
    void expectSameReplay(const radiosim::Scenario& scenario,
                          const std::vector<std::string>& arguments) {
        Seen seen = capture(scenario, arguments);
        ASSERT_NE(captured(), "");
        if (arguments.front() == "run") {
            EXPECT_EQ(replay(), seen);
            return;
        }
        seen.log.clear();
        EXPECT_EQ(start({"replay", file("c.jsonl")}, false), seen);
    }
};

TEST_F(CaptureProperties, TheSuppliedScenariosReplayToTheSame) {
    std::size_t count = 0;
    for (const auto& each : std::filesystem::directory_iterator(SCENARIOS)) {
        SCOPED_TRACE(each.path().string());
        const radiosim::Scenario scenario = radiosim::Scenario::fromFile(each.path());
        for (const char* command : {"list", "doctor", "run"}) {
            std::vector<std::string> arguments = {command};
            if (arguments.front() != "list") {
                arguments.insert(arguments.end(),
                                 {"--set", "SSID=Lab", "--set", "WarningSignalStrength=40"});
            }
            expectSameReplay(scenario, arguments);
            ++count;
        }
    }
    EXPECT_GE(count, 30U);
}

TEST_F(CaptureProperties, GeneratedEnvironmentsReplayToTheSame) {
    for (std::uint32_t seed = 1; seed <= GENERATED && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Generator generator(seed);
        const radiosim::Scenario scenario = generator.scenario();
        expectSameReplay(scenario, generator.command());
    }
}

// Addresses and GUIDs of a capture with hidden names are random bytes, which may spell a name.
void clearAddresses(const std::string& function, std::string& block) {
    const auto clear = [&block](std::size_t at, std::size_t size) {
        if (at + size <= block.size()) {
            block.replace(at, size, size, '\0');
        }
    };
    if (function == "WlanEnumInterfaces") {
        for (std::size_t at = offsetof(WLAN_INTERFACE_INFO_LIST, InterfaceInfo); at < block.size();
             at += sizeof(WLAN_INTERFACE_INFO)) {
            clear(at + offsetof(WLAN_INTERFACE_INFO, InterfaceGuid), sizeof(GUID));
        }
    } else if (function == "WlanGetNetworkBssList") {
        for (std::size_t at = offsetof(WLAN_BSS_LIST, wlanBssEntries); at < block.size();
             at += sizeof(WLAN_BSS_ENTRY)) {
            clear(at + offsetof(WLAN_BSS_ENTRY, dot11Bssid), sizeof(DOT11_MAC_ADDRESS));
        }
    } else if (block.size() == sizeof(WLAN_CONNECTION_ATTRIBUTES)) {
        clear(offsetof(WLAN_CONNECTION_ATTRIBUTES, wlanAssociationAttributes) +
                  offsetof(WLAN_ASSOCIATION_ATTRIBUTES, dot11Bssid),
              sizeof(DOT11_MAC_ADDRESS));
    }
}

// The names in the blocks and in what is shown of them; the rest of a line has none.
std::string namesIn(const std::string& capture) {
    std::string names;
    std::istringstream lines(capture);
    for (std::string line; std::getline(lines, line);) {
        const mrl::Json json = mrl::Json::parse(line);
        if (json.contains("run")) {
            names += json["run"]["settings"].dump() + json["run"].value("device", std::string());
        }
        if (!json.contains("call")) {
            continue;
        }
        for (const mrl::Json& item :
             json.value("shown", mrl::Json::object()).value("list", mrl::Json::array())) {
            for (const char* key : {"ssid", "profile", "description"}) {
                names += item.value(key, std::string()) + "\n";
            }
        }
        const std::string digits = json["output"].value("bytes", std::string());
        std::string block;
        for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
            block += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
        }
        clearAddresses(json["call"].get<std::string>(), block);
        names += block;
    }
    return names;
}

TEST_F(CaptureProperties, HiddenNamesLeaveNoPartOfANameAndTheSameVerdict) {
    for (std::uint32_t seed = 1; seed <= HIDDEN && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        Generator generator(seed, false);
        const radiosim::Scenario scenario = generator.scenario();
        std::vector<std::string> arguments = generator.command();
        arguments.insert(arguments.end(), {"--capture-names", "hidden"});
        const Seen seen = capture(scenario, arguments);
        const Seen again = start({"replay", file("c.jsonl")}, arguments.front() == "run");
        EXPECT_EQ(again.exitValue, seen.exitValue) << again.errors;
        const auto linesOf = [](const std::string& text) {
            return std::count(text.begin(), text.end(), '\n');
        };
        if (arguments.front() == "run") {
            EXPECT_EQ(linesOf(again.log), linesOf(seen.log));
        }
        const std::string left = namesIn(captured());
        for (const std::string& name : Generator::names()) {
            for (std::size_t i = 0; i + 3 <= name.size(); ++i) {
                const std::string part = name.substr(i, 3);
                if (part.find_first_not_of(' ') != std::string::npos) {
                    EXPECT_EQ(left.find(part), std::string::npos) << part << " of " << name;
                }
            }
        }
        EXPECT_EQ(captured().find("8c2f6b1e-4d37"), std::string::npos);
        EXPECT_EQ(captured().find("8C2F6B1E-4D37"), std::string::npos);
    }
}

} // namespace
