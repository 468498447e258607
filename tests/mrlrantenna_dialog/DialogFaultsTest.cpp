// Every call of the dialog fails, one at a time, with every code, while it opens and later: what is
// shown, logged and raised, and that the dialog recovers.
#include "DialogTest.h"

#include <mrlrantenna/Faults.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <sstream>

namespace {

using test::Dialog;
using test::Place;

using Lines = std::vector<std::string>;

constexpr std::uint32_t BACKGROUND_SCAN = 2;
constexpr std::uint32_t RADIO_STATE = 4;
constexpr std::uint32_t CONNECTION = 7;
constexpr std::int32_t ON = 1;
constexpr std::int32_t OFF = 2;
constexpr std::uint32_t NOT_VISIBLE = 0x28002;

// --- What is expected, in words ------------------------------------------------------------------

// What a failure adds to the log and the events: a list of these words, each with its lines and
// events.
struct Trace {
    Lines lines;
    Lines events;
};

Trace traceOf(const std::string& word, std::uint32_t code) {
    const std::string query = "# The queryWirelessLanInterface call with OPCODE ";
    const std::string notSwitched = "# WlanSetInterface returned ERROR_INVALID_STATE when setting "
                                    "wlan_intf_opcode_radio_state. The radio ";
    if (word == "list failed") {
        Trace trace{test::listFailure(code).lines, test::listFailure(code).events};
        for (std::string& event : trace.events) {
            event = event.substr(event.find(' ') + 1); // the key alone
            event.resize(event.find(' '));
        }
        return trace;
    }
    const std::map<std::string, Trace> others = {
        {"query failed", {{test::querySentence(code)}, {}}},
        {"no radio state", {{query + "wlan_intf_opcode_radio_state  failed"}, {}}},
        {"no connection", {{query + "wlan_intf_opcode_current_connection    failed"}, {}}},
        {"no background scan", {{query + "wlan_intf_opcode_background_scan_enabled failed"}, {}}},
        {"no reason", {{"1381  The reason code is " + std::to_string(NOT_VISIBLE) + "."}, {}}},
        {"radio 0 stays", {{notSwitched + "0 could not be enabled or disabled"}, {}}},
        // The dialog asks for the last PHY, and knows none yet.
        {"radio -1 stays", {{notSwitched + "-1 could not be enabled or disabled"}, {}}},
        {"warned", {{}, {"WARNING_EVENT"}}},
        {"radio is off",
         {test::listFailure(ERROR_NDIS_DOT11_POWER_STATE_INVALID).lines,
          {"ERROR_NDIS_DOT11_POWER_STATE_INVALID"}}},
    };
    return others.at(word);
}

Trace traceOfAll(const char* words, std::uint32_t code) {
    Trace all;
    std::istringstream stream(words);
    for (std::string word; std::getline(stream, word, ';');) {
        word.erase(0, word.find_first_not_of(' '));
        const Trace trace = traceOf(word, code);
        all.lines.insert(all.lines.end(), trace.lines.begin(), trace.lines.end());
        all.events.insert(all.events.end(), trace.events.begin(), trace.events.end());
    }
    return all;
}

// What the dialog shows. The defaults are those of a run in which nothing fails.
struct Display {
    const char* adapter = "Simulated Wireless Adapter";
    const char* list = "Attic, Cellar";
    const char* chosen = "Cellar";
    const char* details = "Cellar: Low 33% 33";
    const char* radio = "RADIO_BUTTON_ON";
    const char* picture = "on";
};

std::string text(const Display& display) {
    return std::string("adapter ") + display.adapter + "; list " + display.list + "; chosen " +
           display.chosen + "; details " + display.details + "; radio " +
           tesk5::translation(display.radio).utf8() + "; picture " + display.picture;
}

std::string textOn(const Dialog& dialog) {
    std::string list;
    for (const std::string& entry : test::entries(dialog)) {
        list += (list.empty() ? "" : ", ") + entry;
    }
    return "adapter " + test::shown(dialog, IDC_ADAPTER_NAME) + "; list " + list + "; chosen " +
           test::selected(dialog) + "; details " + test::shown(dialog, IDC_SSID) + ": " +
           test::strength(dialog) + "; radio " + test::shown(dialog, IDC_RADIO_STATUS) +
           "; picture " + test::picture(dialog);
}

constexpr Display NOTHING_LISTED = {.list = "", .chosen = "none", .details = ":   0"};
constexpr Display NOTHING_SHOWN = {.details = ":   0"};
constexpr Display QUALITY_UNASKED_ONCE = {.details = "Cellar: Good 55% 55"};
constexpr Display RADIO_UNKNOWN = {.radio = "RADIO_STATE_UNKNOWN", .picture = "greyed off"};

class DialogFaults : public test::DialogTest {
protected:
    // Attic is not connectable; Cellar, which the adapter is connected to, claims 100 %.
    void startScene(std::int32_t software = ON) {
        radiosim::Scenario scenario;
        radiosim::Interface& adapter = scenario.interfaces.front();
        adapter.accessPoints = {
            {.ssid = "Attic", .signal = 30U, .connectable = false, .reason = NOT_VISIBLE},
            {.ssid = "Cellar", .signal = 100U}};
        adapter.phys = {{.software = software}};
        radiosim::Connection& connection = adapter.connection.emplace();
        connection.ssid = "Cellar";
        connection.quality = 33U;
        startRadio(std::move(scenario));
    }

    void expectTrace(const char* words, std::uint32_t code, std::size_t eventsBefore) {
        const Trace expected = traceOfAll(words, code);
        EXPECT_EQ(test::withNumbersLike(expected.lines, failureLines()), expected.lines);
        const Lines keys = raisedKeys();
        EXPECT_EQ(Lines(keys.begin() + static_cast<std::ptrdiff_t>(eventsBefore), keys.end()),
                  expected.events);
    }

private:
    // The device's lines without those about the networks that it sees.
    Lines failureLines() {
        constexpr std::string_view ordinary[] = {
            "There are ",      "Interface ", "GUID: ",           "State: ",   "Total ",
            "Network ",        "SSID: ",     "Security",         "Contains ", "Currently ",
            "The network is ", "BSS type: ", "Signal quality: ", "Default ",  " The reason is "};
        Lines lines;
        for (const std::string& line : logged(test::DEVICE_LOGGER)) {
            const std::string said = line.substr(line.find(' ') + 1);
            if (std::none_of(std::begin(ordinary), std::end(ordinary),
                             [&said](std::string_view word) { return said.starts_with(word); })) {
                lines.push_back(line);
            }
        }
        return lines;
    }
};

// --- While it opens ------------------------------------------------------------------------------

// What differs in a row besides the fault.
enum class Scene { USUAL, RADIO_OFF, FIRST_REGISTRATION_FAILS, SECOND_DIALOG };

struct OpeningRow {
    Place place;
    const char* trace = "";
    Display display = {};
    Scene scene = Scene::USUAL;
};

#define UNREADY "no radio state; radio -1 stays; warned"

const OpeningRow openingRows[] = {
    {.place = {"WlanOpenHandle", 1}, .trace = UNREADY},
    {.place = {"UuidFromStringW", 1}, .trace = UNREADY},
    {.place = {"WlanRegisterNotification", 1}, .trace = UNREADY},
    {.place = {"WlanQueryInterface", 1, RADIO_STATE}, .trace = "query failed;" UNREADY},
    {.place = {"WlanEnumInterfaces", 1}, .display = {.adapter = ""}},
    {.place = {"UuidToStringW", 1}},
    {.place = {"RpcStringFreeW", 1}},
    {.place = {"WlanQueryInterface", 2, RADIO_STATE}, .trace = "query failed; no radio state"},
    {.place = {"WlanSetInterface", 1},
     .trace = "radio 0 stays; warned; radio is off; radio is off",
     .display = {.list = "",
                 .chosen = "none",
                 .details = ":   0",
                 .radio = "RADIO_BUTTON_OFF",
                 .picture = "off"},
     .scene = Scene::RADIO_OFF},
    {.place = {"WlanGetAvailableNetworkList", 1},
     .trace = "list failed",
     .display = NOTHING_LISTED},
    {.place = {"WlanGetAvailableNetworkList", 2}, .trace = "list failed", .display = NOTHING_SHOWN},
    {.place = {"WlanGetAvailableNetworkList", 3}, .trace = "list failed"},
    {.place = {"WlanGetAvailableNetworkList", 4}, .trace = "list failed"},
    {.place = {"WlanGetAvailableNetworkList", 5}, .trace = "list failed"},
    {.place = {"WlanReasonCodeToString", 1}, .trace = "no reason"},
    {.place = {"WlanReasonCodeToString", 5}, .trace = "no reason"},
    {.place = {"WlanQueryInterface", 1, CONNECTION}, .trace = "query failed; no connection"},
    {.place = {"WlanQueryInterface", 2, CONNECTION}, .trace = "query failed; no connection"},
    {.place = {"WlanQueryInterface", 3, CONNECTION},
     .trace = "query failed; no connection",
     .display = QUALITY_UNASKED_ONCE},
    {.place = {"WlanQueryInterface", 5, CONNECTION},
     .trace = "query failed; no connection",
     .display = QUALITY_UNASKED_ONCE},
    {.place = {"WlanQueryInterface", 3, RADIO_STATE},
     .trace = "query failed; no radio state",
     .display = RADIO_UNKNOWN},
    {.place = {"WlanCloseHandle", 1}},

    // The interfaces are listed on a handle that is opened anew, and so is the radio asked for.
    {.place = {"WlanOpenHandle", 2},
     .trace = UNREADY,
     .display = {.adapter = ""},
     .scene = Scene::FIRST_REGISTRATION_FAILS},
    {.place = {"UuidFromStringW", 2},
     .trace = UNREADY,
     .display = {.adapter = ""},
     .scene = Scene::FIRST_REGISTRATION_FAILS},
    {.place = {"WlanRegisterNotification", 2},
     .trace = UNREADY,
     .display = {.adapter = ""},
     .scene = Scene::FIRST_REGISTRATION_FAILS},
    // No PHY is known until the next refresh, and one that does not exist reads as off.
    {.place = {"WlanRegisterNotification", 3},
     .trace = "no radio state;" UNREADY,
     .display = {.radio = "HARDWARE_SWITCH_OFF", .picture = "greyed off"},
     .scene = Scene::FIRST_REGISTRATION_FAILS},
    {.place = {"WlanCloseHandle", 2}, .trace = UNREADY, .scene = Scene::FIRST_REGISTRATION_FAILS},

    {.place = {"WlanEnumInterfaces", 2}, .display = {.adapter = ""}, .scene = Scene::SECOND_DIALOG},
    {.place = {"UuidToStringW", 2}, .scene = Scene::SECOND_DIALOG},
    {.place = {"RpcStringFreeW", 2}, .scene = Scene::SECOND_DIALOG},
};

void PrintTo(const OpeningRow& row, std::ostream* out) {
    *out << row.place.name();
}

class OpeningFaults : public DialogFaults, public testing::WithParamInterface<OpeningRow> {};

TEST_P(OpeningFaults, LeadToTheirRowsOutcome) {
    const OpeningRow& row = GetParam();
    for (const std::uint32_t code : test::errorsOf(row.place.function)) {
        SCOPED_TRACE(code);
        startScene(row.scene == Scene::RADIO_OFF ? OFF : ON);
        if (row.scene == Scene::FIRST_REGISTRATION_FAILS) {
            radio().addFault(
                {.function = "WlanRegisterNotification", .nth = 1, .code = ERROR_GEN_FAILURE});
        }
        radio().addFault(row.place.failingWith(code));
        if (row.scene == Scene::SECOND_DIALOG) {
            runTest({});
        }
        log().clear();
        const std::size_t eventsBefore = raised().size();
        EXPECT_EQ(runTest({[&](Dialog& dialog) {
                      EXPECT_EQ(textOn(dialog), text(row.display));
                      EXPECT_TRUE(test::timerRuns(dialog));
                  }}),
                  tesk5::TestResult::COMPLETED());
        expectTrace(row.trace, code, eventsBefore);
        const std::string function = row.place.function;
        test::expectDeliberateLeaksAlone(radio(), function == "WlanCloseHandle" ? 1 : 0,
                                         function == "RpcStringFreeW" ? 1 : 0);
        EXPECT_THAT(radio().unfiredFaults(), testing::IsEmpty());
        test::countCombination();
    }
}

INSTANTIATE_TEST_SUITE_P(EveryCall, OpeningFaults, testing::ValuesIn(openingRows),
                         [](const testing::TestParamInfo<OpeningRow>& each) {
                             return each.param.place.name() + "_scene" +
                                    std::to_string(static_cast<int>(each.param.scene));
                         });

// --- Later on ------------------------------------------------------------------------------------

enum class Act { TICK, REFRESH, CLICK };

struct LaterRow {
    Act act;
    Place place; ///< counted from the act on
    const char* trace = "";
    Display display = {};
    const char* connection = nullptr; ///< key of the text; null: as it was
};

const LaterRow laterRows[] = {
    {.act = Act::TICK,
     .place = {"WlanQueryInterface", 1, CONNECTION},
     .trace = "query failed; no connection",
     .connection = "ERROR_INVALID_STATE"},
    {.act = Act::TICK,
     .place = {"WlanQueryInterface", 1, BACKGROUND_SCAN},
     .trace = "query failed; no background scan",
     .connection = "VALID_STATE"},
    {.act = Act::TICK, .place = {"WlanScan", 1}, .connection = "VALID_STATE"},
    {.act = Act::REFRESH,
     .place = {"WlanGetAvailableNetworkList", 1},
     .trace = "list failed",
     .display = NOTHING_LISTED},
    {.act = Act::REFRESH, .place = {"WlanGetAvailableNetworkList", 2}, .trace = "list failed"},
    {.act = Act::REFRESH, .place = {"WlanGetAvailableNetworkList", 3}, .trace = "list failed"},
    {.act = Act::REFRESH, .place = {"WlanReasonCodeToString", 2}, .trace = "no reason"},
    {.act = Act::REFRESH,
     .place = {"WlanQueryInterface", 4, CONNECTION},
     .trace = "query failed; no connection",
     .display = QUALITY_UNASKED_ONCE},
    {.act = Act::REFRESH,
     .place = {"WlanQueryInterface", 1, RADIO_STATE},
     .trace = "query failed; no radio state",
     .display = RADIO_UNKNOWN},
    // A radio whose state cannot be read counts as off: the click only updates the picture, and the
    // next reading restores it.
    {.act = Act::CLICK,
     .place = {"WlanQueryInterface", 1, RADIO_STATE},
     .trace = "query failed; no radio state"},
    {.act = Act::CLICK, .place = {"WlanSetInterface", 1}, .trace = "radio 0 stays"},
    {.act = Act::CLICK,
     .place = {"WlanQueryInterface", 2, RADIO_STATE},
     .trace = "query failed; no radio state",
     .display = RADIO_UNKNOWN},
};

void PrintTo(const LaterRow& row, std::ostream* out) {
    *out << row.place.name();
}

class LaterFaults : public DialogFaults, public testing::WithParamInterface<LaterRow> {
protected:
    void act(Dialog& dialog) {
        switch (GetParam().act) {
        case Act::TICK:
            test::tick(dialog);
            break;
        case Act::REFRESH:
            dialog.populateAvailableNetworks();
            dialog.updateSelectedNetworkInformation();
            break;
        case Act::CLICK:
            test::click(dialog, IDC_RADIO_ON_IMAGE);
            break;
        }
    }
};

TEST_P(LaterFaults, LeadToTheirRowsOutcomeAndToNothingLater) {
    const LaterRow& row = GetParam();
    startScene();
    std::vector<test::Step> steps;
    for (const std::uint32_t code : test::errorsOf(row.place.function)) {
        steps.emplace_back([this, &row, code](Dialog& dialog) {
            SCOPED_TRACE(code);
            radio().settle();
            log().clear();
            const std::size_t eventsBefore = raised().size();
            radio().addFault(row.place.failingWith(code));
            const std::string connection = test::shown(dialog, IDC_CONNECTION_STATE);
            act(dialog);
            EXPECT_EQ(textOn(dialog), text(row.display));
            EXPECT_EQ(test::shown(dialog, IDC_CONNECTION_STATE),
                      row.connection == nullptr ? connection : localized(row.connection));
            expectTrace(row.trace, code, eventsBefore);
            EXPECT_THAT(radio().unfiredFaults(), testing::IsEmpty());
            test::countCombination();

            radio().clearFaults();
            radio().setRadio(0, 0, ON, ON);
            dialog.populateAvailableNetworks();
            dialog.updateSelectedNetworkInformation();
            EXPECT_EQ(textOn(dialog), text(Display{}));
        });
    }
    EXPECT_EQ(runTest(std::move(steps)), tesk5::TestResult::COMPLETED());
    EXPECT_EQ(journal().count("text 0 " + localized("TITLE")), 1); // the same dialog all along
    test::expectDeliberateLeaksAlone(radio(), 0);
}

std::string nameOfLater(const testing::TestParamInfo<LaterRow>& row) {
    constexpr const char* ACTS[] = {"Tick_", "Refresh_", "Click_"};
    return ACTS[static_cast<std::size_t>(row.param.act)] + row.param.place.name();
}

INSTANTIATE_TEST_SUITE_P(EveryCall, LaterFaults, testing::ValuesIn(laterRows), nameOfLater);

// Each function that can fail has a fault at its first and at a later call.
TEST(DialogFaultTables, NameEachFunctionThatTheDialogCalls) {
    for (const test::FunctionErrors& each : test::documentedErrors()) {
        const std::string function = each.function;
        if (function == "WlanFreeMemory" || function == "WlanGetNetworkBssList") {
            continue; // returns nothing; is called by the other test alone
        }
        int later = 0;
        int first = 0;
        for (const OpeningRow& row : openingRows) {
            if (function == row.place.function) {
                ++(row.place.nth == 1 ? first : later);
            }
        }
        for (const LaterRow& row : laterRows) {
            if (function == row.place.function) {
                // Its scan is the dialog's first one as well as one of later ticks.
                first += function == "WlanScan" ? 1 : 0;
                ++later;
            }
        }
        EXPECT_GT(first, 0) << function;
        EXPECT_GT(later, 0) << function;
    }
}

} // namespace
