// Captures of the whole program, and what their replays show.
#include "CapturedProgram.h"

#include <support/VirtualClock.h>

#include <nativewifi/Handles.h>

#include <radiosim/Engine.h>

#include <mrl/Json.h>

namespace {

using test::CapturedProgram;
using test::Seen;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Arguments = std::vector<std::string>;

const Arguments RUN = {"run", "--set", "SSID=Lab", "--set", "FailingSignalStrength=20"};

class Captures : public CapturedProgram {
protected:
    std::vector<std::string> lines() const {
        std::istringstream text(captured());
        std::vector<std::string> all;
        for (std::string line; std::getline(text, line);) {
            all.push_back(line);
        }
        return all;
    }
    void writeLines(const std::vector<std::string>& all) const {
        std::string text;
        for (const std::string& line : all) {
            text += line + "\n";
        }
        writeCapture(text);
    }
};

TEST_F(Captures, OfARunReplayToTheSame) {
    const Seen seen = capture(radiosim::Scenario::builtIn(), RUN);
    EXPECT_EQ(seen.exitValue, 0) << seen.errors;
    EXPECT_THAT(seen.log, HasSubstr("getAccessPointSignalStrength"));
    EXPECT_THAT(seen.report, HasSubstr("\"PASS\""));
    EXPECT_THAT(captured(), StartsWith("{\"capture\":1,"));
    EXPECT_EQ(replay(), seen);
}

TEST_F(Captures, OfListAndDoctorReplayToTheSame) {
    for (const Arguments& command :
         {Arguments{"list"}, Arguments{"list", "--device", "simulated"}, Arguments{"doctor"},
          Arguments{"doctor", "--set", "SSID=Lab"}}) {
        const Seen seen = capture(radiosim::Scenario::builtIn(), command);
        EXPECT_NE(seen.output, "");
        EXPECT_EQ(start({"replay", file("c.jsonl")}, false).output, seen.output);
        EXPECT_EQ(start({"replay", file("c.jsonl")}, false).exitValue, seen.exitValue);
    }
}

TEST_F(Captures, HaveEachCallInALineThatPeopleCanRead) {
    capture(radiosim::Scenario::builtIn(), RUN);
    std::size_t calls = 0;
    for (const std::string& line : lines()) {
        const mrl::Json json = mrl::Json::parse(line);
        calls += json.contains("call") ? 1U : 0U;
    }
    EXPECT_GT(calls, 15U);
    EXPECT_THAT(captured(), HasSubstr("\"adapters\":["));
    EXPECT_THAT(captured(), HasSubstr("\"call\":\"WlanScan\""));
    EXPECT_THAT(captured(), HasSubstr("\"opcode\":\"wlan_intf_opcode_radio_state\",\"radio\":[{"
                                      "\"software\":\"dot11_radio_state_on\""));
    EXPECT_THAT(captured(), HasSubstr("{\"ssid\":\"Lab\",\"profile\":"));
    EXPECT_THAT(captured(), HasSubstr("\"shown\":\"wlan_notification_acm_scan_complete\""));
    EXPECT_THAT(lines().back(), HasSubstr("\"end\":{\"exitValue\":0}"));
}

TEST_F(Captures, AreWholeLinesWheneverTheProgramEnds) {
    test::VirtualClock clock;
    radiosim::Engine radio(radiosim::Scenario::builtIn());
    std::size_t checked = 0;
    radio.onCall([&](const radiosim::Call&) {
        const std::string text = captured();
        EXPECT_TRUE(text.ends_with("\n")) << text;
        ++checked;
    });
    Arguments arguments = RUN;
    arguments.insert(arguments.end(), {"--capture", file("c.jsonl")});
    start(arguments);
    EXPECT_GT(checked, 15U);
}

TEST_F(Captures, MakeNoCallOfTheirOwn) {
    const auto callsWith = [this](const Arguments& more) {
        test::VirtualClock clock;
        radiosim::Engine radio(radiosim::Scenario::builtIn());
        Arguments arguments = RUN;
        arguments.insert(arguments.end(), more.begin(), more.end());
        start(arguments);
        return radio.callNames();
    };
    EXPECT_EQ(callsWith({"--capture", file("c.jsonl")}), callsWith({}));
}

TEST_F(Captures, CutOffInALineReplayUpToIt) {
    capture(radiosim::Scenario::builtIn(), RUN);
    const std::string whole = captured();
    writeCapture(whole.substr(0, whole.size() * 2 / 3));
    const Seen seen = replay();
    EXPECT_EQ(seen.exitValue, 65);
    EXPECT_THAT(seen.errors, HasSubstr("expected was its end, asked was "));
    EXPECT_EQ(seen.report, "");
}

TEST_F(Captures, EndTheReplayAtTheFirstDifference) {
    capture(radiosim::Scenario::builtIn(), RUN);
    std::vector<std::string> changed = lines();
    const auto scan = std::find_if(changed.begin(), changed.end(), [](const std::string& line) {
        return line.find("\"WlanScan\"") != std::string::npos;
    });
    ASSERT_NE(scan, changed.end());
    scan->replace(scan->find("\"WlanScan\""), 10, "\"WlanStop\"");
    writeLines(changed);
    const Seen seen = replay();
    EXPECT_EQ(seen.exitValue, 65);
    EXPECT_THAT(seen.errors,
                HasSubstr("ended at line " + std::to_string(scan - changed.begin() + 1) +
                          ": expected was WlanStop {"));
    EXPECT_THAT(seen.errors, HasSubstr(", asked was WlanScan {"));
    EXPECT_EQ(seen.report, "");
}

TEST_F(Captures, EndTheReplayAlsoWhenADestructorDiffers) {
    capture(radiosim::Scenario::builtIn(), {"list"});
    std::vector<std::string> changed = lines();
    std::erase_if(changed, [](const std::string& line) {
        return line.find("\"WlanCloseHandle\"") != std::string::npos;
    });
    writeLines(changed);
    EXPECT_EQ(start({"replay", file("c.jsonl")}, false).exitValue, 65);
}

TEST_F(Captures, TakeOtherSettingsInTheReplay) {
    EXPECT_EQ(capture(radiosim::Scenario::builtIn(), RUN).exitValue, 0);
    const Seen seen = replay({"--set", "FailingSignalStrength=99"});
    EXPECT_EQ(seen.exitValue, 2);
    EXPECT_THAT(seen.report, HasSubstr("FAILING_SIGNAL_STRENGTH_DETECTED"));
}

TEST_F(Captures, ReplayWithTheDevicesOfADeviceFile) {
    std::ofstream(mrl::System::path(file("cards.json")))
        << R"([{"name": "Card", "capabilities": ["Wireless", "NetworkCard"], "properties": {
            "DeviceSystemName": "\\DEVICE\\{8C2F6B1E-4D37-4A59-9E0B-5F6A7D3C1B20}",
            "wlanAPISupported": "true"}}])";
    Arguments arguments = RUN;
    arguments.insert(arguments.end(), {"--devices", file("cards.json")});
    const Seen seen = capture(radiosim::Scenario::builtIn(), arguments);
    EXPECT_EQ(seen.exitValue, 0);
    std::filesystem::remove(mrl::System::path(file("cards.json")));
    EXPECT_EQ(replay(), seen);
}

TEST_F(Captures, AreRefusedBeforeTheRunWhenTheyCannotBeWritten) {
    const test::VirtualClock clock;
    const radiosim::Engine radio;
    std::filesystem::create_directory(mrl::System::path(file("folder")));
    const std::string log = file("log.txt");
    const struct {
        Arguments options;
        const char* reason;
    } rows[] = {
        {{"--capture", file("folder")}, "cannot be written"},
        {{"--capture", log}, "both name"},
        {{"--capture", ""}, "--capture"},
        {{"--capture-names", "hidden"}, "needs --capture"},
        {{"--capture", file("c.jsonl"), "--capture-names", "some"}, "give shown or hidden"},
    };
    for (const auto& [options, reason] : rows) {
        Arguments arguments = RUN;
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Seen seen = start(arguments);
        EXPECT_EQ(seen.exitValue, 64);
        EXPECT_THAT(seen.errors, HasSubstr(reason));
        EXPECT_EQ(seen.log, "");
        EXPECT_EQ(captured(), "");
    }
    EXPECT_EQ(radio.callCount("WlanOpenHandle"), 0U);
}

TEST_F(Captures, GetTheFoldersThatAreMissing) {
    const test::VirtualClock clock;
    const radiosim::Engine radio;
    EXPECT_EQ(start({"list", "--capture", file("a/b/c.jsonl")}).exitValue, 0);
    EXPECT_THAT(test::bytesOfFile(file("a/b/c.jsonl")), HasSubstr("WlanEnumInterfaces"));
}

// The line of a call with this output.
std::string answerLine(const std::string& function, const std::string& output) {
    return R"({"at":0,"thread":1,"call":")" + function +
           R"(","arguments":{},"result":0,"took":0,"output":{)" + output + "}}\n";
}

TEST_F(Captures, ThatCannotBeReplayedAreRefused) {
    const std::string head = R"({"capture":1,"started":"2026-11-20T19:55:01.123Z","run":)";
    const std::string run = R"({"module":"mrlrantenna","version":"6.5","build":"1","command":")";
    const std::string rest = R"(","settings":[],"tests":[)";
    const struct {
        std::string text;
        std::string reason;
    } rows[] = {
        {"", "line 1: there is no whole line"},
        {"nothing\n", "line 1: "},
        {R"({"capture":2})"
         "\n",
         "of another version"},
        {head + "{}}\n", "line 1: "},
        {R"({"capture":1,"started":"2262-04-12T00:00:00.000Z","run":{}})"
         "\n",
         "line 1: \"started\" is no time such as"},
        {head + run + "watch" + rest + "]}}\n", "made of the command \"watch\""},
        {head + run + "run" + rest + "\"DiversityTest\"]}}\n", "of DiversityTest, in which"},
        {head + run + "run" + rest + "]}}\n{}\n", "line 2: \"at\" is missing"},
        {head + run + "run" + rest + "]}}\n" +
             answerLine("WlanEnumInterfaces", "\"block\":\"b1\",\"bytes\":\"0500000000000000\""),
         "line 2: the block states 5 items and has room for 0"},
        {head + run + "run" + rest + "]}}\n" +
             answerLine("WlanGetNetworkBssList", "\"block\":\"b1\",\"bytes\":\"05\""),
         "line 2: the block is too short for the head of a list"},
        {head + run + "run" + rest + "]}}\n" +
             answerLine("WlanQueryInterface", "\"dataSize\":4,\"block\":\"b1\",\"bytes\":\"05\""),
         "line 2: \"dataSize\" is not the size of the block"},
        {head + run + "run" + rest + "]}}\n" + answerLine("WlanScan", "\"guid\":\"x\""),
         "line 2: a GUID of 36 characters was expected"},
        {head + run + "run" + rest + "]}}\n" + std::string(0x400001, ' ') + "\n",
         "line 2: the line is too long"},
    };
    for (const auto& [text, reason] : rows) {
        writeCapture(text);
        const Seen seen = replay();
        EXPECT_EQ(seen.exitValue, 64) << text;
        EXPECT_THAT(seen.errors, HasSubstr(reason));
    }
    EXPECT_EQ(start({"replay"}).exitValue, 64);
    EXPECT_EQ(start({"replay", file("missing.jsonl")}).exitValue, 64);
    EXPECT_EQ(start({"replay", file("c.jsonl"), "--capture", file("d.jsonl")}).exitValue, 64);
}

TEST_F(Captures, AreScenariosOfTheSimulator) {
    const Seen seen = capture(radiosim::Scenario::builtIn(), RUN);
    const radiosim::Scenario scenario =
        radiosim::Scenario::fromFile(mrl::System::path(file("c.jsonl")));
    ASSERT_EQ(scenario.interfaces.size(), 1U);
    EXPECT_EQ(scenario.interfaces.front().description, "Simulated Wireless-AC Adapter");
    test::VirtualClock clock;
    const radiosim::Engine radio(scenario);
    const Seen again = start(RUN);
    EXPECT_EQ(again.output, seen.output);
    EXPECT_EQ(again.log, seen.log);
    // What was never captured is answered too.
    EXPECT_EQ(start({"doctor", "--set", "SSID=Lab"}).exitValue, 0);
}

TEST_F(Captures, AsScenariosFollowTheRadioThatAClientSwitches) {
    capture(radiosim::Scenario::builtIn(), RUN);
    const test::VirtualClock clock;
    const radiosim::Engine radio(radiosim::Scenario::fromFile(mrl::System::path(file("c.jsonl"))));
    const nativewifi::Api& api = nativewifi::api();
    HANDLE handle = nullptr;
    DWORD version = 0;
    ASSERT_EQ(api.WlanOpenHandle(2, nullptr, &version, &handle), DWORD{ERROR_SUCCESS});
    const nativewifi::ClientHandle client = [&] {
        nativewifi::ClientHandle owner;
        *out(owner) = handle;
        return owner;
    }();
    const auto listed = [&] {
        nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> interfaces;
        api.WlanEnumInterfaces(handle, nullptr, out(interfaces));
        nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
        return api.WlanGetAvailableNetworkList(handle, &interfaces->InterfaceInfo[0].InterfaceGuid,
                                               0, nullptr, out(list));
    };
    const auto switchTo = [&](DOT11_RADIO_STATE software) {
        nativewifi::WlanMemory<WLAN_INTERFACE_INFO_LIST> interfaces;
        api.WlanEnumInterfaces(handle, nullptr, out(interfaces));
        WLAN_PHY_RADIO_STATE state{0, software, dot11_radio_state_unknown};
        return api.WlanSetInterface(handle, &interfaces->InterfaceInfo[0].InterfaceGuid,
                                    wlan_intf_opcode_radio_state, sizeof state, &state, nullptr);
    };
    EXPECT_EQ(listed(), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(switchTo(dot11_radio_state_off), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(listed(), DWORD{ERROR_NDIS_DOT11_POWER_STATE_INVALID});
    EXPECT_EQ(switchTo(dot11_radio_state_on), DWORD{ERROR_SUCCESS});
    EXPECT_EQ(listed(), DWORD{ERROR_SUCCESS});
}

} // namespace
