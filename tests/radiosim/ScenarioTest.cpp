// The JSON form: what is read, and what is refused with which place and reason.
#include <support/DeepJson.h>

#include <radiosim/Engine.h>

#include <gtest/gtest.h>

#include <ostream>

namespace radiosim {
namespace {

using namespace std::chrono_literals;

TEST(ScenarioJson, ReadsAnInterfaceWithEveryKey) {
    const Scenario scenario = Scenario::fromJson(R"({
        "description": "all of it",
        "serviceVersion": 1,
        "interfaces": [{
            "guid": "11111111-2222-4333-8444-555555555501", "description": "Card",
            "state": "associating", "autoconf": false, "backgroundScan": false,
            "mediaStreaming": true, "bssType": "any",
            "phys": [{"software": "off", "hardware": "unknown"}, {"software": 7}],
            "connection": {"ssidHex": "4c:61-62", "profile": "P", "quality": 3, "rxRate": 1,
                           "txRate": 2, "phyIndex": 1, "channel": 36,
                           "otherLinks": [{"channel": 1, "rssi": -61}]},
            "rssi": -44, "receiveAntennas": 5, "scanDurationMs": 10, "scanEnd": "silent",
            "infrastructurePairs": [{"auth": "wpa", "cipher": "tkip"}], "adhocPairs": [],
            "countries": ["DE", "FRA"], "accessPoints": []
        }]
    })");
    EXPECT_EQ(scenario.serviceVersion, 1U);
    ASSERT_EQ(scenario.interfaces.size(), 1U);
    const Interface& facts = scenario.interfaces[0];
    EXPECT_EQ(facts.guid, "11111111-2222-4333-8444-555555555501");
    EXPECT_EQ(facts.description, "Card");
    EXPECT_EQ(facts.state, 5);
    EXPECT_EQ(facts.receiveAntennas, 5U);
    ASSERT_EQ(facts.connection->otherLinks.size(), 1U);
    EXPECT_EQ(facts.connection->otherLinks[0].rssi, -61);
    EXPECT_FALSE(facts.autoconf);
    EXPECT_FALSE(facts.backgroundScan);
    EXPECT_TRUE(facts.mediaStreaming);
    EXPECT_EQ(facts.bssType, 3);
    ASSERT_EQ(facts.phys.size(), 2U);
    EXPECT_EQ(facts.phys[0].software, 2);
    EXPECT_EQ(facts.phys[0].hardware, 0);
    EXPECT_EQ(facts.phys[1].software, 7);
    EXPECT_EQ(facts.phys[1].hardware, 1);
    ASSERT_TRUE(facts.connection);
    EXPECT_EQ(facts.connection->ssid, "Lab");
    EXPECT_EQ(facts.connection->profile, "P");
    EXPECT_EQ(facts.connection->quality->at(0ms), 3U);
    EXPECT_EQ(facts.connection->rxRate, 1U);
    EXPECT_EQ(facts.connection->txRate, 2U);
    EXPECT_EQ(facts.connection->phyIndex, 1U);
    EXPECT_EQ(facts.connection->channel, 36U);
    EXPECT_EQ(facts.rssi->at(0ms), -44);
    EXPECT_EQ(facts.scanDuration, 10ms);
    EXPECT_EQ(facts.scanEnd, ScanEnd::SILENT);
    ASSERT_EQ(facts.infrastructurePairs.size(), 1U);
    EXPECT_EQ(facts.infrastructurePairs[0].auth, 3);
    EXPECT_EQ(facts.infrastructurePairs[0].cipher, 2);
    EXPECT_TRUE(facts.adhocPairs.empty());
    EXPECT_EQ(facts.countries, (std::vector<std::string>{"DE", "FRA"}));
}

Scenario withAccessPoint(const std::string& json) {
    return Scenario::fromJson(R"({"interfaces": [{"accessPoints": [)" + json + "]}]}");
}

AccessPoint accessPoint(const std::string& json) {
    return withAccessPoint(json).interfaces.at(0).accessPoints.at(0);
}

TEST(ScenarioJson, ReadsAnAccessPointWithEveryKey) {
    const AccessPoint read = accessPoint(R"({
        "ssid": "Läb", "hidden": true, "signal": 12, "profile": "P", "connected": true,
        "secured": false, "auth": "wpa-psk", "cipher": "tkip", "bssType": "independent",
        "connectable": false, "reason": 163842, "phyTypes": ["erp", 20], "visible": "beforeScan",
        "scans": 3, "fromMs": 1, "toMs": 2, "bssidCount": 9, "inNetworkList": false,
        "ssidLength": 40,
        "bss": [{"bssid": "02:00:00:00:00:ff", "linkQuality": 5, "rssi": -90, "channel": 14,
                 "phyType": "ofdm", "chains": [0, null, -12], "heardEveryMs": 200,
                 "heardUntilMs": 9000, "width": 160, "elements": "30 00"}]})");
    EXPECT_EQ(read.ssid, "L\xC3\xA4"
                         "b");
    EXPECT_TRUE(read.hidden);
    EXPECT_EQ(read.signal.at(0ms), 12U);
    EXPECT_EQ(read.profile, "P");
    EXPECT_EQ(read.connected, true);
    EXPECT_FALSE(read.secured);
    EXPECT_EQ(read.auth, 4);
    EXPECT_EQ(read.cipher, 2);
    EXPECT_EQ(read.bssType, 2);
    EXPECT_FALSE(read.connectable);
    EXPECT_EQ(read.reason, 163842U);
    EXPECT_EQ(read.phyTypes, (std::vector<std::int32_t>{6, 20}));
    EXPECT_EQ(read.visible, Visible::BEFORE_SCAN);
    EXPECT_EQ(read.scans, 3U);
    EXPECT_EQ(read.from, 1ms);
    EXPECT_EQ(read.to, 2ms);
    EXPECT_EQ(read.bssidCount, 9U);
    EXPECT_FALSE(read.inNetworkList);
    EXPECT_EQ(read.ssidLength, 40U);
    ASSERT_TRUE(read.bss);
    ASSERT_EQ(read.bss->size(), 1U);
    EXPECT_EQ((*read.bss)[0].bssid, (std::vector<std::uint8_t>{2, 0, 0, 0, 0, 255}));
    EXPECT_EQ((*read.bss)[0].linkQuality->at(0ms), 5U);
    EXPECT_EQ((*read.bss)[0].rssi->at(0ms), -90);
    EXPECT_EQ((*read.bss)[0].chains,
              (std::vector<std::optional<std::int32_t>>{0, std::nullopt, -12}));
    EXPECT_EQ((*read.bss)[0].heardEvery, 200ms);
    EXPECT_EQ((*read.bss)[0].width, 160U);
    EXPECT_EQ((*read.bss)[0].elements, (std::vector<std::uint8_t>{0x30, 0}));
    EXPECT_EQ((*read.bss)[0].heardUntil, 9s);
    EXPECT_EQ((*read.bss)[0].channel, 14U);
    EXPECT_EQ((*read.bss)[0].phyType, 4);
}

TEST(ScenarioJson, ReadsALevelThatMoves) {
    const AccessPoint read = accessPoint(R"({"ssid": "Lab", "bss": [{"rssi": {
        "start": -60.4, "driftPerSecond": -0.5, "everyMs": 1000,
        "steps": [{"atMs": 4000, "by": 10}]}}]})");
    const Level& level = *read.bss->at(0).rssi;
    EXPECT_EQ(level.at(0ms), -60);
    EXPECT_EQ(level.at(3999ms), -62);
    EXPECT_EQ(level.at(4s), -52);
}

TEST(ScenarioJson, ReadsTheNoiseOfALevel) {
    const AccessPoint read = accessPoint(R"({"ssid": "Lab", "bss": [{"rssi": {
        "start": -60, "noise": {"deviation": 3, "carried": 0.5, "seed": 4}}}]})");
    const Level same(Level::Shape{.start = -60, .deviation = 3, .carried = 0.5, .seed = 4});
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(read.bss->at(0).rssi->at(i * 100ms), same.at(i * 100ms));
    }
}

TEST(ScenarioJson, ReadsANameAsHexBytes) {
    EXPECT_EQ(accessPoint(R"({"ssidHex": "43 61 66 E9"})").ssid, "Caf\xE9");
}

TEST(ScenarioJson, ReadsEveryKindOfSignal) {
    const auto at = [](const std::string& json, Milliseconds time) {
        return accessPoint(R"({"ssid": "x", "signal": )" + json + "}").signal.at(time);
    };
    EXPECT_EQ(at("7", 1h), 7U);
    EXPECT_EQ(at(R"({"values": [1, 2], "stepMs": 10})", 10ms), 2U);
    EXPECT_EQ(at(R"({"values": [1, 2], "stepMs": 10, "repeat": true})", 20ms), 1U);
    EXPECT_EQ(at(R"({"walk": {"start": 9, "step": 0}})", 1h), 9U);
    EXPECT_EQ(at(R"({"walk": {"min": 40, "max": 60}})", 0ms), 50U) << "a walk starts in the middle";
    EXPECT_EQ(at(R"({"raw": 4294967295})", 0ms), 4294967295U);
}

TEST(ScenarioJson, TakesAnOpenNetworkForUnsecuredAndAReasonForNotConnectable) {
    EXPECT_FALSE(accessPoint(R"({"ssid": "x", "auth": "open"})").secured);
    EXPECT_EQ(accessPoint(R"({"ssid": "x", "auth": "open"})").cipher, 0);
    EXPECT_TRUE(accessPoint(R"({"ssid": "x"})").secured);
    EXPECT_FALSE(accessPoint(R"({"ssid": "x", "reason": 1})").connectable);
    EXPECT_TRUE(accessPoint(R"({"ssid": "x"})").connectable);
}

TEST(ScenarioJson, ReadsFaultsAndNotifications) {
    const Scenario scenario = Scenario::fromJson(R"({
        "interfaces": [{}],
        "faults": [{"function": "WlanQueryInterface", "nth": 2, "opcode": 4, "delayMs": 3,
                    "code": 5, "dataSize": 6, "count": 7, "noData": true},
                   {"function": "WlanOpenHandle", "version": 1}],
        "notifications": [{"atMs": 5, "source": "msm", "code": 7, "data": "0a0b"},
                          {"afterScan": "every", "source": 65535},
                          {"afterScan": 2, "interface": 0}]})");
    ASSERT_EQ(scenario.faults.size(), 2U);
    const Fault& fault = scenario.faults[0];
    EXPECT_EQ(fault.function, "WlanQueryInterface");
    EXPECT_EQ(fault.nth, 2U);
    EXPECT_EQ(fault.opcode, 4U);
    EXPECT_EQ(fault.delay, 3ms);
    EXPECT_EQ(fault.code, 5U);
    EXPECT_EQ(fault.dataSize, 6U);
    EXPECT_EQ(fault.count, 7U);
    EXPECT_TRUE(fault.noData);
    EXPECT_EQ(scenario.faults[1].version, 1U);
    ASSERT_EQ(scenario.notifications.size(), 3U);
    EXPECT_EQ(scenario.notifications[0].at, 5ms);
    EXPECT_EQ(scenario.notifications[0].source, 0x10U);
    EXPECT_EQ(scenario.notifications[0].data, (std::vector<std::uint8_t>{10, 11}));
    EXPECT_EQ(scenario.notifications[1].afterScan, 0U);
    EXPECT_EQ(scenario.notifications[1].source, 65535U);
    EXPECT_EQ(scenario.notifications[1].code, 7U);
    EXPECT_EQ(scenario.notifications[2].afterScan, 2U);
}

struct Refusal {
    const char* name;
    std::string json;
    std::string place;
    std::string reason;

    friend std::ostream& operator<<(std::ostream& stream, const Refusal& refusal) {
        return stream << refusal.name;
    }
};

class RefusedScenario : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedScenario, SaysWhereAndWhy) {
    try {
        Scenario::fromJson(GetParam().json);
        GTEST_FAIL() << "it was taken";
    } catch (const ScenarioError& error) {
        EXPECT_EQ(error.place(), GetParam().place);
        EXPECT_EQ(error.reason(), GetParam().reason);
        EXPECT_EQ(error.what(), GetParam().place + ": " + GetParam().reason);
    }
}

// One access point, one signal, one radio, one fault, one notification.
std::string point(const std::string& json) {
    return R"({"interfaces": [{"accessPoints": [{"ssid": "ok"}, )" + json + "]}]}";
}
std::string signal(const std::string& json) {
    return point(R"({"ssid": "x", "signal": )" + json + "}");
}
std::string bss(const std::string& json) {
    return point(R"({"ssid": "x", "bss": [)" + json + "]}");
}
std::string card(const std::string& json) {
    return R"({"interfaces": [)" + json + "]}";
}
std::string fault(const std::string& json) {
    return R"({"interfaces": [], "faults": [)" + json + "]}";
}
std::string notification(const std::string& json) {
    return R"({"interfaces": [{}], "notifications": [)" + json + "]}";
}

std::string outOfRange(const std::string& number, const std::string& lowest,
                       const std::string& highest) {
    return number + " is out of range: a whole number from " + lowest + " to " + highest +
           " was expected";
}

const std::string POINT = "/interfaces/0/accessPoints/1";

const Refusal refusals[] = {
    {"UnknownKey", R"({"interfaces": [], "interface": 1})", "/interface",
     "there is no such key here"},
    {"UnknownKeyThatNeedsEscapes", R"({"interfaces": [{"a/b~": 1}]})", "/interfaces/0/a~1b~0",
     "there is no such key here"},
    {"NoInterfaces", "{}", "/", "the key \"interfaces\" is missing"},
    {"NoObject", "[]", "/", "an object was expected"},
    {"NoArray", R"({"interfaces": {}})", "/interfaces", "an array was expected"},
    {"KeyTwice", R"({"interfaces": [{"rssi": -1, "rssi": -2}]})", "/",
     "the key \"rssi\" stands twice in one object"},
    {"Guid", card(R"({"guid": "{8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b20}"})"), "/interfaces/0/guid",
     "a GUID of 36 characters without braces was expected"},
    {"SameGuid", card("{}, {\"guid\": \"8C2F6B1E-4D37-4A59-9E0B-5F6A7D3C1B20\"}"),
     "/interfaces/1/guid", "interface 0 has the same GUID"},
    {"SameGuidByDefault", card("{}, {}"), "/interfaces/1/guid", "interface 0 has the same GUID"},
    {"LongDescription", card(R"({"description": ")" + std::string(256, 'x') + "\"}"),
     "/interfaces/0/description", "longer than 255 UTF-16 units"},
    {"Radio", card(R"({"phys": [{"software": "dim"}]})"), "/interfaces/0/phys/0/software",
     "\"dim\" is none of unknown, on, off"},
    {"State", card(R"({"state": 1.5})"), "/interfaces/0/state",
     "a whole number from -2147483648 to 2147483647 was expected"},
    {"Level", card(R"({"rssi": "loud"})"), "/interfaces/0/rssi",
     "a whole number from -200 to 200, or an object with \"start\" was expected"},
    {"LevelWithoutStart", card(R"({"rssi": {"driftPerSecond": 1}})"), "/interfaces/0/rssi",
     "the key \"start\" is missing"},
    {"LevelOutOfRange", card(R"({"rssi": {"start": -200.5}})"), "/interfaces/0/rssi/start",
     "-200.5 is out of range: a number from -200 to 200 was expected"},
    {"LevelOfText", card(R"({"rssi": {"start": "-60"}})"), "/interfaces/0/rssi/start",
     "a number from -200 to 200 was expected"},
    {"NoiseThatLasts", card(R"({"rssi": {"start": -60, "noise": {"deviation": 1, "carried": 1}}})"),
     "/interfaces/0/rssi/noise/carried", "more than 0.95"},
    {"Flag", card(R"({"autoconf": 1})"), "/interfaces/0/autoconf", "true or false was expected"},
    {"Duration", card(R"({"scanDurationMs": -1})"), "/interfaces/0/scanDurationMs",
     outOfRange("-1", "0", "604800000")},
    {"HugeNumber", card(R"({"scanDurationMs": 18446744073709551615})"),
     "/interfaces/0/scanDurationMs", outOfRange("18446744073709551615", "0", "604800000")},
    {"Country", card(R"({"countries": ["D"]})"), "/interfaces/0/countries/0",
     "two or three letters were expected"},
    {"ConnectionWithoutName", card(R"({"connection": {}})"), "/interfaces/0/connection",
     "exactly one of \"ssid\" and \"ssidHex\" was expected"},
    {"TwoNames", point(R"({"ssid": "x", "ssidHex": "78"})"), POINT,
     "exactly one of \"ssid\" and \"ssidHex\" was expected"},
    {"NoName", point("{}"), POINT, "exactly one of \"ssid\" and \"ssidHex\" was expected"},
    {"NameOfAnotherType", point(R"({"ssid": 1})"), POINT + "/ssid", "a text was expected"},
    {"EmptyName", point(R"({"ssid": ""})"), POINT + "/ssid",
     "an empty name; a network without a name is written as \"hidden\": true"},
    {"LongName", point(R"({"ssid": "0123456789abcdef0123456789abcdeé"})"), POINT + "/ssid",
     "a name of 33 bytes; 32 are possible"},
    {"Hex", point(R"({"ssidHex": "4"})"), POINT + "/ssidHex",
     "\"4\" is not made of pairs of hexadecimal digits"},
    {"HexLetters", point(R"({"ssidHex": "4z"})"), POINT + "/ssidHex",
     "\"4z\" is not made of pairs of hexadecimal digits"},
    {"Visible", point(R"({"ssid": "x", "visible": "never"})"), POINT + "/visible",
     "\"never\" is none of always, afterScan, beforeScan"},
    {"Signal", signal("101"), POINT + "/signal", outOfRange("101", "0", "100")},
    {"SignalText", signal("\"strong\""), POINT + "/signal",
     "a whole number from 0 to 100, or an object with \"values\", \"walk\" or \"raw\" "
     "was expected"},
    {"SignalWithoutValues", signal(R"({"values": []})"), POINT + "/signal/values",
     "at least one value was expected"},
    {"SignalValue", signal(R"({"values": [1, -2]})"), POINT + "/signal/values/1",
     outOfRange("-2", "0", "100")},
    {"SignalStep", signal(R"({"values": [1], "stepMs": 0})"), POINT + "/signal/stepMs",
     "more than 0 ms was expected"},
    {"WalkBounds", signal(R"({"walk": {"min": 60, "max": 50}})"), POINT + "/signal/walk",
     "\"min\" is above \"max\""},
    {"WalkStart", signal(R"({"walk": {"start": 10, "min": 20}})"), POINT + "/signal/walk/start",
     "not between \"min\" and \"max\""},
    {"WalkKey", signal(R"({"walk": {"sed": 1}})"), POINT + "/signal/walk/sed",
     "there is no such key here"},
    {"WalkAndValues", signal(R"({"walk": {}, "values": [1]})"), POINT + "/signal/values",
     "there is no such key here"},
    {"Bssid", bss(R"({"bssid": "02:00:00"})"), POINT + "/bss/0/bssid",
     "six bytes were expected, as in 02:00:00:00:00:01"},
    {"Width", bss(R"({"width": 22})"), POINT + "/bss/0/width",
     "a width of 20, 40, 80, 160 or 320 MHz was expected"},
    {"Channel", bss(R"({"channel": 0})"), POINT + "/bss/0/channel", outOfRange("0", "1", "233")},
    {"FaultFunction", fault(R"({"function": "WlanConnect", "code": 1})"), "/faults/0",
     "there is no function \"WlanConnect\""},
    {"FaultWithoutFunction", fault(R"({"code": 1})"), "/faults/0",
     "the key \"function\" is missing"},
    {"FaultNth", fault(R"({"function": "WlanScan", "nth": 0, "code": 1})"), "/faults/0/nth",
     outOfRange("0", "1", "4294967295")},
    {"FaultSize", fault(R"({"function": "WlanQueryInterface", "dataSize": 99999999})"),
     "/faults/0/dataSize", outOfRange("99999999", "0", "16777216")},
    {"NotificationTime", notification("{}"), "/notifications/0",
     "exactly one of \"atMs\" and \"afterScan\" was expected"},
    {"NotificationInterface", notification(R"({"atMs": 0, "interface": 1})"), "/notifications/0",
     "there is no interface 1"},
    {"NotificationScan", notification(R"({"afterScan": "none"})"), "/notifications/0/afterScan",
     "\"none\" is none of every"},
};

INSTANTIATE_TEST_SUITE_P(Scenarios, RefusedScenario, testing::ValuesIn(refusals),
                         [](const auto& refusal) { return std::string(refusal.param.name); });

std::string placeOf(const std::string& json) {
    try {
        Scenario::fromJson(json);
    } catch (const ScenarioError& error) {
        EXPECT_TRUE(error.reason().starts_with("syntax error")) << "without the parser's name";
        return error.place();
    }
    return "taken";
}

TEST(MalformedScenario, IsRefusedWithLineAndColumn) {
    EXPECT_EQ(placeOf("{\n  \"interfaces\": [}\n"), "line 2, column 18");
    EXPECT_EQ(placeOf(""), "line 1, column 1");
    EXPECT_EQ(placeOf("{\"interfaces\": []"), "line 1, column 18");
    EXPECT_EQ(placeOf("{\"interfaces\": []} x"), "line 1, column 20");
    EXPECT_EQ(placeOf("{\n\n\"\xFF\": 1}"), "line 3, column 2");
}

TEST(MalformedScenario, IsRefusedHoweverDeepItGoes) {
    EXPECT_EQ(placeOf(test::deepBrackets()),
              "line 1, column " + std::to_string(test::DEPTH_OF_BRACKETS + 1));
}

TEST(ScenarioInCode, IsRefusedByTheEngineWhenItCannotBe) {
    EXPECT_THROW(Engine({.interfaces = {{.guid = "no"}}}), ScenarioError);
    EXPECT_THROW(Engine({.interfaces = {{}, {}}}), ScenarioError);
    EXPECT_THROW(Engine({.faults = {{.function = "No"}}}), ScenarioError);
    EXPECT_THROW(Engine({.notifications = {{.interfaceIndex = 1}}}), ScenarioError);
    EXPECT_NO_THROW(Engine{});
}

} // namespace
} // namespace radiosim
