// Every call of the verification test fails, one at a time, with every code: a table of places and
// of what each failure changes, multiplied by the codes of the function.
#include "Faults.h"
#include "VerificationRun.h"

#include <algorithm>
#include <set>

namespace {

using tesk5::TestResult;
using test::Place;

using Lines = std::vector<std::string>;

constexpr std::uint32_t RADIO_STATE = 4;
constexpr std::uint32_t CONNECTION = 7;

// Whether the service is well but for the one fault, or the first registration fails besides, so
// that the device opens its handle anew later on.
enum class Service { WELL, FIRST_REGISTRATION_FAILS };

// One row of the table: the call that fails, and how the run then differs from one in which nothing
// fails. That one passes: its second scan hears "Lab" at 60%.
struct Row {
    Place place;
    Service service = Service::WELL;
    Lines added = {};       ///< the lines that the log has besides
    std::size_t lacked = 0; ///< how many it lacks
    TestResult result = TestResult::PASS();
};

// The sentences of the code that the call fails with.
const std::string QUERY_FAILED = "query failed";
const std::string LIST_FAILED = "list failed";

const std::string NO_RADIO_STATE =
    "# The queryWirelessLanInterface call with OPCODE wlan_intf_opcode_radio_state  failed";
const std::string NO_CONNECTION = "# The queryWirelessLanInterface call with OPCODE "
                                  "wlan_intf_opcode_current_connection    failed";
const std::string AS_LISTED = "1346 Signal quality: 100%"; // instead of the connection's
const std::string REASON_CODE = "1381  The reason code is 163842.";
const std::string RADIO_OFF = "256 The wireless radio is in off state";

// Only the list finds "Lab", at 50%.
Row withOneScan(const char* function, std::uint32_t nth) {
    const std::string test = "WirelessSignalStrengthVerificationTest::";
    return {.place = {function, nth},
            .added = {"154 getAccessPointSignalStrength::forcedScanSignalStrength: 0",
                      "265 " + test +
                          "getAccessPointSignalStrength() returned signal strength: 50 "
                          "for the SSID: Lab",
                      "292 " + test +
                          "SSID: Lab warning signal strength: 55 detected signal strength: 50"},
            .lacked = 9,
            .result = TestResult::WARN()};
}
// The first registration fails, and a later call besides.
Row withALateStart(const char* function, std::uint32_t nth, Lines alsoAdded = {},
                   std::size_t lacked = 0) {
    Lines added = {NO_RADIO_STATE};
    added.insert(added.end(), alsoAdded.begin(), alsoAdded.end());
    return {.place = {function, nth},
            .service = Service::FIRST_REGISTRATION_FAILS,
            .added = std::move(added),
            .lacked = lacked};
}

const Row faultRows[] = {
    {.place = {"WlanOpenHandle", 1}, .added = {NO_RADIO_STATE}},
    withOneScan("WlanOpenHandle", 2),
    withOneScan("WlanOpenHandle", 3),
    {.place = {"WlanCloseHandle", 1}},
    withOneScan("WlanEnumInterfaces", 1),
    withOneScan("WlanEnumInterfaces", 2),
    withOneScan("WlanScan", 1),
    withOneScan("WlanScan", 2),
    {.place = {"WlanGetNetworkBssList", 1}, .lacked = 4},
    withOneScan("WlanGetNetworkBssList", 2),
    {.place = {"WlanQueryInterface", 1, RADIO_STATE}, .added = {QUERY_FAILED, NO_RADIO_STATE}},
    {.place = {"WlanQueryInterface", 2, RADIO_STATE},
     .added = {QUERY_FAILED, NO_RADIO_STATE, RADIO_OFF},
     .lacked = 43,
     .result = TestResult::CANNOTRUN()},
    {.place = {"WlanQueryInterface", 3, RADIO_STATE},
     .added = {QUERY_FAILED, NO_RADIO_STATE, RADIO_OFF},
     .lacked = 9,
     .result = TestResult::CANNOTRUN()},
    {.place = {"WlanQueryInterface", 1, CONNECTION},
     .added = {QUERY_FAILED, NO_CONNECTION, AS_LISTED},
     .lacked = 1},
    {.place = {"WlanQueryInterface", 2, CONNECTION},
     .added = {QUERY_FAILED, NO_CONNECTION, AS_LISTED},
     .lacked = 1},
    {.place = {"WlanRegisterNotification", 1}, .added = {NO_RADIO_STATE}},
    {.place = {"WlanGetAvailableNetworkList", 1}, .added = {LIST_FAILED}},
    {.place = {"WlanGetAvailableNetworkList", 2}, .added = {LIST_FAILED}},
    {.place = {"WlanReasonCodeToString", 1}, .added = {REASON_CODE}, .lacked = 1},
    {.place = {"WlanReasonCodeToString", 2}, .added = {REASON_CODE}, .lacked = 1},
    {.place = {"UuidFromStringW", 1}, .added = {NO_RADIO_STATE}},

    // The list is asked for on a handle that is opened anew, and so is the connection behind it.
    withALateStart("WlanOpenHandle", 4),
    withALateStart("WlanOpenHandle", 5, {NO_CONNECTION, AS_LISTED}, 1),
    withALateStart("UuidFromStringW", 2),
    withALateStart("UuidFromStringW", 3, {NO_CONNECTION, AS_LISTED}, 1),
    withALateStart("WlanRegisterNotification", 2),
    withALateStart("WlanRegisterNotification", 3, {NO_CONNECTION, AS_LISTED}, 1),
    withALateStart("WlanCloseHandle", 1),
    withALateStart("WlanCloseHandle", 2),
    withALateStart("WlanCloseHandle", 3),
};

void PrintTo(const Row& row, std::ostream* out) {
    *out << row.place.name();
}

// The verification test never calls these: it neither switches a radio nor lists interfaces by
// name, and WlanFreeMemory returns nothing.
const std::set<std::string> notFailing = {"WlanSetInterface", "UuidToStringW", "RpcStringFreeW",
                                          "WlanFreeMemory"};

class VerificationFaults : public test::VerificationRun {
protected:
    // Starts a scene with a log of its own.
    void start(Service service = Service::WELL) {
        startScene();
        log().clear();
        if (service == Service::FIRST_REGISTRATION_FAILS) {
            radio().addFault(
                {.function = "WlanRegisterNotification", .nth = 1, .code = ERROR_GEN_FAILURE});
        }
    }

    // The lines of the log that are not, in their order, those of `good`.
    Lines addedTo(const Lines& good) {
        Lines added;
        auto next = good.begin();
        for (const std::string& line : log().texts()) {
            const auto found = std::find(next, good.end(), line);
            if (found == good.end()) {
                added.push_back(line);
            } else {
                next = found + 1;
            }
        }
        return added;
    }
};

// The table is whole: each call of each function of a run in which nothing fails has its row, and
// each function that fails at all has a later call too.
TEST_F(VerificationFaults, StrikeEveryCallOfARun) {
    start();
    EXPECT_EQ(verify(), TestResult::PASS());
    for (const test::FunctionErrors& each : test::documentedErrors()) {
        const std::string function = each.function;
        if (notFailing.contains(function)) {
            EXPECT_TRUE(function == "WlanFreeMemory" || radio().callCount(function) == 0)
                << function;
            continue;
        }
        std::size_t struck = 0;
        std::uint32_t last = 0;
        for (const Row& row : faultRows) {
            if (function == row.place.function) {
                struck += row.service == Service::WELL ? 1U : 0U;
                last = std::max(last, row.place.nth);
            }
        }
        EXPECT_EQ(struck, radio().callCount(function)) << function;
        EXPECT_GT(last, 1U) << function;
    }
}

class VerificationFault : public VerificationFaults, public testing::WithParamInterface<Row> {};

TEST_P(VerificationFault, ChangesTheRunAsItsRowSays) {
    const Row& row = GetParam();
    start();
    EXPECT_EQ(verify(), TestResult::PASS());
    const Lines good = log().texts();
    for (const std::uint32_t code : test::errorsOf(row.place.function)) {
        SCOPED_TRACE(code);
        Lines lines;
        Lines events = raisedLines();
        for (const std::string& line : row.added) {
            if (line == QUERY_FAILED) {
                lines.push_back(test::querySentence(code));
            } else if (line == LIST_FAILED) {
                const auto [ofTheList, raised] = test::listFailure(code);
                lines.insert(lines.end(), ofTheList.begin(), ofTheList.end());
                events.insert(events.end(), raised.begin(), raised.end());
            } else {
                lines.push_back(line);
            }
        }
        if (row.result == TestResult::WARN()) {
            events.emplace_back(
                "warning FAILING_SIGNAL_STRENGTH_DETECTED "
                "modules/src/windows/diag/mrlrantenna/MRLrAntenna.cpp:291 SSIDName=\"Lab\" "
                "FailingSignalStrength=55 DetectedSignalStrength=50");
        }

        start(row.service);
        radio().addFault(row.place.failingWith(code));
        const double before = clock().elapsedSeconds();
        EXPECT_EQ(verify(), row.result);
        EXPECT_EQ(test::withNumbersLike(lines, addedTo(good)), lines);
        EXPECT_EQ(log().texts().size() + row.lacked, good.size() + lines.size());
        EXPECT_EQ(raisedLines(), events);
        test::expectDeliberateLeaksAlone(radio(), handlesLeft());
        EXPECT_THAT(radio().unfiredFaults(), testing::IsEmpty());
        // Two forced scans and three polls are the longest of these runs.
        EXPECT_LE(clock().elapsedSeconds() - before, 14.3);
        test::countCombination();
    }
}

INSTANTIATE_TEST_SUITE_P(EveryCall, VerificationFault, testing::ValuesIn(faultRows),
                         [](const testing::TestParamInfo<Row>& each) {
                             return each.param.place.name() +
                                    (each.param.service == Service::WELL
                                         ? ""
                                         : "_after_a_failed_registration");
                         });

} // namespace
