// Every call of the verification test fails, one at a time, with every code: a table of places and
// of what each failure leads to, multiplied by the codes of the function.
#include "Faults.h"
#include "VerificationRun.h"

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

namespace {

using tesk5::TestResult;
using test::Place;

constexpr std::uint32_t RADIO_STATE = 4;
constexpr std::uint32_t CONNECTION = 7;

// Whether the service is well but for the one fault, or the first registration fails besides, so
// that the device opens its handle anew later on.
enum class Service { WELL, FIRST_REGISTRATION_FAILS };

// One row of the table: the call that fails, and the lines that the log then has, as words of
// storyWords(). The last word is the end of the run.
struct Row {
    Place place;
    Service service;
    const char* story;
};

// A run in which nothing fails: two scans, of which the second hears Lab at 60 %; a look without
// Lab and one with it at 50 %.
#define SCANS "heard two; heard Lab; forced 60;"
#define ONE_SCAN_LOST "heard two; forced 0;"
#define FIRST_LOOK "look at two; Attic; Cellar; compare two;"
#define SECOND_LOOK "look at three; Attic; Cellar; Lab; compare three;"
#define ENDS_WELL FIRST_LOOK SECOND_LOOK "pass"
#define ENDS_WEAK FIRST_LOOK SECOND_LOOK "warn"
#define CELLAR_UNASKED "Cellar begins; no connection; Cellar unasked;"

const Row rows[] = {
    {{"WlanOpenHandle", 1}, Service::WELL, "no radio state;" SCANS ENDS_WELL},
    {{"WlanOpenHandle", 2}, Service::WELL, ONE_SCAN_LOST ENDS_WEAK},
    {{"WlanOpenHandle", 3}, Service::WELL, ONE_SCAN_LOST ENDS_WEAK},
    {{"WlanCloseHandle", 1}, Service::WELL, SCANS ENDS_WELL},
    {{"WlanEnumInterfaces", 1}, Service::WELL, ONE_SCAN_LOST ENDS_WEAK},
    {{"WlanEnumInterfaces", 2}, Service::WELL, ONE_SCAN_LOST ENDS_WEAK},
    {{"WlanScan", 1}, Service::WELL, ONE_SCAN_LOST ENDS_WEAK},
    {{"WlanScan", 2}, Service::WELL, ONE_SCAN_LOST ENDS_WEAK},
    {{"WlanGetNetworkBssList", 1}, Service::WELL, "heard Lab; forced 60;" ENDS_WELL},
    {{"WlanGetNetworkBssList", 2}, Service::WELL, ONE_SCAN_LOST ENDS_WEAK},
    {{"WlanQueryInterface", 1, RADIO_STATE},
     Service::WELL,
     "query failed; no radio state;" SCANS ENDS_WELL},
    {{"WlanQueryInterface", 2, RADIO_STATE},
     Service::WELL,
     SCANS "look at two; Attic; Cellar; query failed; no radio state; cannot run"},
    {{"WlanQueryInterface", 3, RADIO_STATE},
     Service::WELL,
     SCANS FIRST_LOOK
     "look at three; Attic; Cellar; Lab; query failed; no radio state; cannot run"},
    {{"WlanQueryInterface", 1, CONNECTION},
     Service::WELL,
     SCANS "look at two; Attic; Cellar begins; query failed; no connection; Cellar unasked;"
           "compare two;" SECOND_LOOK "pass"},
    {{"WlanQueryInterface", 2, CONNECTION},
     Service::WELL,
     SCANS FIRST_LOOK "look at three; Attic; Cellar begins; query failed; no connection;"
                      "Cellar unasked; Lab; compare three; pass"},
    {{"WlanRegisterNotification", 1}, Service::WELL, "no radio state;" SCANS ENDS_WELL},
    {{"WlanGetAvailableNetworkList", 1}, Service::WELL, SCANS "list failed;" ENDS_WELL},
    {{"WlanGetAvailableNetworkList", 2},
     Service::WELL,
     SCANS FIRST_LOOK "list failed;" SECOND_LOOK "pass"},
    {{"WlanReasonCodeToString", 1},
     Service::WELL,
     SCANS "look at two; Attic without reason; Cellar; compare two;" SECOND_LOOK "pass"},
    {{"WlanReasonCodeToString", 2},
     Service::WELL,
     SCANS FIRST_LOOK "look at three; Attic without reason; Cellar; Lab; compare three; pass"},
    {{"UuidFromStringW", 1}, Service::WELL, "no radio state;" SCANS ENDS_WELL},

    // The list is asked for on a handle that is opened anew, and so is the connection behind it.
    {{"WlanOpenHandle", 4},
     Service::FIRST_REGISTRATION_FAILS,
     "no radio state;" SCANS "no look;" ENDS_WELL},
    {{"WlanOpenHandle", 5},
     Service::FIRST_REGISTRATION_FAILS,
     "no radio state;" SCANS "look at two; Attic;" CELLAR_UNASKED "compare two;" SECOND_LOOK
     "pass"},
    {{"UuidFromStringW", 2},
     Service::FIRST_REGISTRATION_FAILS,
     "no radio state;" SCANS "no look;" ENDS_WELL},
    {{"UuidFromStringW", 3},
     Service::FIRST_REGISTRATION_FAILS,
     "no radio state;" SCANS "look at two; Attic;" CELLAR_UNASKED "compare two;" SECOND_LOOK
     "pass"},
    {{"WlanRegisterNotification", 2},
     Service::FIRST_REGISTRATION_FAILS,
     "no radio state;" SCANS "no look;" ENDS_WELL},
    {{"WlanRegisterNotification", 3},
     Service::FIRST_REGISTRATION_FAILS,
     "no radio state;" SCANS "look at two; Attic;" CELLAR_UNASKED "compare two;" SECOND_LOOK
     "pass"},
    {{"WlanCloseHandle", 1}, Service::FIRST_REGISTRATION_FAILS, "no radio state;" SCANS ENDS_WELL},
    {{"WlanCloseHandle", 2}, Service::FIRST_REGISTRATION_FAILS, "no radio state;" SCANS ENDS_WELL},
    {{"WlanCloseHandle", 3}, Service::FIRST_REGISTRATION_FAILS, "no radio state;" SCANS ENDS_WELL},
};

// The verification test never calls these: it neither switches a radio nor lists interfaces by
// name, and WlanFreeMemory returns nothing.
const std::set<std::string> notFailing = {"WlanSetInterface", "UuidToStringW", "RpcStringFreeW",
                                          "WlanFreeMemory"};

// What the log says of one network of the list, up to its quality.
std::vector<std::string> network(const std::string& name, const std::vector<std::string>& middle) {
    std::vector<std::string> lines = {"1268 SSID: " + name, "1273 Security enabled.",
                                      "1288 Contains 1 BSSIDs."};
    lines.insert(lines.end(), middle.begin(), middle.end());
    lines.emplace_back("1326 BSS type: Infrastructure");
    return lines;
}
std::vector<std::string> numbered(int index, std::vector<std::string> lines) {
    lines.insert(lines.begin(), "1157 Network " + std::to_string(index) + ":");
    return lines;
}
std::vector<std::string> measured(std::vector<std::string> lines, const std::string& quality) {
    lines.push_back(quality);
    lines.emplace_back("1351 Default authentication algorithm: RSNA PSK");
    lines.emplace_back("1355 Default cipher algorithm: RSNA PSK");
    return lines;
}

std::vector<std::string> heard(const std::vector<std::string>& names) {
    std::vector<std::string> lines;
    for (const std::string& name : names) {
        lines.push_back("1601 forceScanMatched::Enumerated SSID: " + name);
        lines.emplace_back("1603 forceScanMatched::Test SSID: Lab");
    }
    return lines;
}
std::vector<std::string> compared(const std::vector<std::string>& names) {
    std::vector<std::string> lines;
    lines.reserve(names.size());
    for (const std::string& name : names) {
        lines.push_back("179 getAccessPointSignalStrength::SSID Being Compared: " + name);
    }
    return lines;
}

using Lines = std::vector<std::string>;

// The log lines of each word of a story.
std::map<std::string, Lines> storyWords(std::uint32_t code) {
    const std::string found = "181 getAccessPointSignalStrength::Found the matching SSID: Lab";
    const std::string listed = "183 getAccessPointSignalStrength::getSignalStrength(): 50";
    const std::string test = "WirelessSignalStrengthVerificationTest::";
    const std::string returned =
        "265 " + test + "getAccessPointSignalStrength() returned signal strength: ";
    const std::string warning = "268 " + test + "warning signal strength parameter: 55";
    const std::string failing = "271 " + test + "failing signal strength parameter: 20";
    const Lines attic = {"1305 Currently not connected.", "1314 The network is not connectable. "};
    const Lines atticWithReason = {attic[0], attic[1],
                                   "1377  The reason is \"The wireless network is not visible.\"."};
    const Lines atticWithout = {attic[0], attic[1],
                                "1381  The reason code is " + std::to_string(0x28002) + "."};
    const Lines cellar = {"1299 Currently connected.", "1320 The network is connectable."};
    const Lines lab = {"1305 Currently not connected.", "1320 The network is connectable."};
    return {
        {"query failed", {test::querySentence(code)}},
        {"no radio state",
         {"# The queryWirelessLanInterface call with OPCODE wlan_intf_opcode_radio_state  failed"}},
        {"no connection",
         {"# The queryWirelessLanInterface call with OPCODE wlan_intf_opcode_current_connection    "
          "failed"}},
        {"list failed", test::listFailure(code).lines},
        {"no look", {}},
        {"heard two", heard({"Attic", "Cellar"})},
        {"heard Lab", heard({"Attic", "Cellar", "Lab"})},
        {"forced 0", {"154 getAccessPointSignalStrength::forcedScanSignalStrength: 0"}},
        {"forced 60", {"154 getAccessPointSignalStrength::forcedScanSignalStrength: 60"}},
        {"look at two", {"1154 Total 2 networks are visible."}},
        {"look at three", {"1154 Total 3 networks are visible."}},
        {"Attic",
         numbered(0, measured(network("Attic", atticWithReason), "1346 Signal quality: 30%"))},
        {"Attic without reason",
         numbered(0, measured(network("Attic", atticWithout), "1346 Signal quality: 30%"))},
        {"Cellar", numbered(1, measured(network("Cellar", cellar), "1339 Signal quality: 33%"))},
        {"Cellar begins", numbered(1, network("Cellar", cellar))},
        {"Cellar unasked", measured({}, "1346 Signal quality: 100%")},
        {"Lab", numbered(2, measured(network("Lab", lab), "1346 Signal quality: 50%"))},
        {"compare two", compared({"Attic", "Cellar"})},
        {"compare three", compared({"Attic", "Cellar", "Lab"})},
        {"pass",
         {found, listed,
          "187 getAccessPointSignalStrength::forcedScanSignalStrength returned better result: 60",
          returned + "60 for the SSID: Lab", warning, failing}},
        {"warn",
         {found, listed, returned + "50 for the SSID: Lab", warning, failing,
          "292 " + test + "SSID: Lab warning signal strength: 55 detected signal strength: 50"}},
        {"cannot run", {"256 The wireless radio is in off state"}},
    };
}

struct Expected {
    Lines lines = {"250 WirelessSignalStrengthVerificationTest::SSID to test: Lab"};
    Lines events = {};
    TestResult result = TestResult::PASS();
};

Expected expectedOf(const char* story, std::uint32_t code) {
    const std::map<std::string, Lines> words = storyWords(code);
    Expected expected;
    std::istringstream stream(story);
    for (std::string word; std::getline(stream, word, ';');) {
        word.erase(0, word.find_first_not_of(' '));
        const Lines& lines = words.at(word);
        expected.lines.insert(expected.lines.end(), lines.begin(), lines.end());
        if (word == "list failed") {
            expected.events = test::listFailure(code).events;
        } else if (word == "warn") {
            expected.events.emplace_back(
                "warning FAILING_SIGNAL_STRENGTH_DETECTED "
                "modules/src/windows/diag/mrlrantenna/MRLrAntenna.cpp:291 SSIDName=\"Lab\" "
                "FailingSignalStrength=55 DetectedSignalStrength=50");
            expected.result = TestResult::WARN();
        } else if (word == "cannot run") {
            expected.result = TestResult::CANNOTRUN();
        }
    }
    return expected;
}

class VerificationFaults : public test::VerificationRun {
protected:
    void start(Service service) {
        startScene();
        if (service == Service::FIRST_REGISTRATION_FAILS) {
            radio().addFault(
                {.function = "WlanRegisterNotification", .nth = 1, .code = ERROR_GEN_FAILURE});
        }
    }

    void expectStory(const char* story, std::uint32_t code) {
        const Expected expected = expectedOf(story, code);
        EXPECT_EQ(verify(), expected.result);
        EXPECT_EQ(test::withNumbersLike(expected.lines, log().texts()), expected.lines);
        EXPECT_EQ(raisedLines(), expected.events);
        test::expectDeliberateLeaksAlone(radio(), handlesLeft());
        // Two forced scans and three polls are the longest of these stories.
        EXPECT_LE(clock().elapsedSeconds(), 14.3);
    }
};

TEST_F(VerificationFaults, AreComparedWithARunInWhichNothingFails) {
    start(Service::WELL);
    expectStory(SCANS ENDS_WELL, 0);
}

TEST_F(VerificationFaults, AreComparedWithARunWhoseFirstRegistrationFails) {
    start(Service::FIRST_REGISTRATION_FAILS);
    expectStory("no radio state;" SCANS ENDS_WELL, 0);
}

// The table is whole: each call of each function of a run in which nothing fails has its row, and
// each function that fails at all has a later call too.
TEST_F(VerificationFaults, StrikeEveryCallOfARun) {
    start(Service::WELL);
    verify();
    for (const test::FunctionErrors& each : test::documentedErrors()) {
        const std::string function = each.function;
        if (notFailing.contains(function)) {
            EXPECT_TRUE(function == "WlanFreeMemory" || radio().callCount(function) == 0)
                << function;
            continue;
        }
        const auto isOfIt = [&function](const Row& row) { return function == row.place.function; };
        const auto struck = std::count_if(std::begin(rows), std::end(rows), [&](const Row& row) {
            return isOfIt(row) && row.service == Service::WELL;
        });
        EXPECT_EQ(static_cast<std::size_t>(struck), radio().callCount(function)) << function;
        EXPECT_TRUE(std::any_of(std::begin(rows), std::end(rows), [&](const Row& row) {
            return isOfIt(row) && row.place.nth > 1;
        })) << function;
    }
}

struct Combination {
    const Row* row;
    std::uint32_t code;
};

void PrintTo(const Combination& combination, std::ostream* out) {
    *out << combination.row->place.name() << " fails with " << combination.code;
}

std::vector<Combination> combinations() {
    std::vector<Combination> all;
    for (const Row& row : rows) {
        for (const std::uint32_t code : test::errorsOf(row.place.function)) {
            all.push_back({&row, code});
        }
    }
    return all;
}

class VerificationFault : public VerificationFaults,
                          public testing::WithParamInterface<Combination> {};

TEST_P(VerificationFault, LeadsToTheStoryOfItsRow) {
    const auto& [row, code] = GetParam();
    start(row->service);
    radio().addFault(row->place.failingWith(code));
    expectStory(row->story, code);
    test::countCombination();
}

INSTANTIATE_TEST_SUITE_P(EveryCallAndCode, VerificationFault, testing::ValuesIn(combinations()),
                         [](const testing::TestParamInfo<Combination>& each) {
                             const Row& row = *each.param.row;
                             return row.place.name() +
                                    (row.service == Service::WELL
                                         ? ""
                                         : "_after_a_failed_registration") +
                                    "_code" + std::to_string(each.param.code);
                         });

} // namespace
