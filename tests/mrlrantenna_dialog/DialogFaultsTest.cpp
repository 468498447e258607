// Every call of the dialog fails, one at a time, with every code, while it opens and later: what is
// shown and raised, and that the dialog recovers. The log lines are the device's and tested there.
#include "FaultScene.h"

#include <mrlrantenna/Faults.h>

namespace {

using test::Dialog;
using test::Display;
using test::Place;
using test::text;
using test::textOn;

using Keys = std::vector<std::string>;

constexpr std::uint32_t BACKGROUND_SCAN = 2;
constexpr std::uint32_t RADIO_STATE = 4;
constexpr std::uint32_t CONNECTION = 7;

constexpr Display NOTHING_LISTED = {.list = "", .chosen = "none", .details = ":   0"};
constexpr Display NOTHING_SHOWN = {.details = ":   0"};
constexpr Display QUALITY_UNASKED_ONCE = {.details = "Cellar: Good 55% 55"};
constexpr Display RADIO_UNKNOWN = {.radio = "RADIO_STATE_UNKNOWN", .picture = "greyed off"};

// The events of a list that fails with `code`.
Keys keysOfListFailure(std::uint32_t code) {
    Keys keys;
    for (const std::string& event : test::listFailure(code).events) {
        const std::size_t key = event.find(' ') + 1;
        keys.push_back(event.substr(key, event.find(' ', key) - key));
    }
    return keys;
}

class DialogFaults : public test::DialogTest {
protected:
    void expectEvents(Keys expected, const Place& place, std::uint32_t code, std::size_t before) {
        if (place.function == std::string("WlanGetAvailableNetworkList")) {
            expected = keysOfListFailure(code);
        }
        const Keys keys = raisedKeys();
        EXPECT_EQ(Keys(keys.begin() + static_cast<std::ptrdiff_t>(before), keys.end()), expected);
        EXPECT_THAT(radio().unfiredFaults(), testing::IsEmpty());
        test::countCombination();
    }
};

// --- While it opens ------------------------------------------------------------------------------

enum class Scene { USUAL, RADIO_OFF, FIRST_REGISTRATION_FAILS, SECOND_DIALOG };

struct OpeningRow {
    const char* name;
    Scene scene = Scene::USUAL;
    std::vector<Place> places;
    Keys events = {}; ///< besides those of the list
    Display display = {};
};

const OpeningRow openingRows[] = {
    {.name = "NoService",
     .places = {{"WlanOpenHandle", 0}},
     .events = {"WARNING_EVENT"},
     .display = {.adapter = "",
                 .list = "",
                 .chosen = "none",
                 .details = ":   0",
                 .radio = "RADIO_STATE_UNKNOWN",
                 .picture = "greyed off"}},
    {.name = "DeviceNotReadyAtFirst",
     .places = {{"WlanOpenHandle"},
                {"UuidFromStringW"},
                {"WlanRegisterNotification"},
                {"WlanQueryInterface", 1, RADIO_STATE}},
     .events = {"WARNING_EVENT"}},
    {.name = "NoInterfaces", .places = {{"WlanEnumInterfaces"}}, .display = {.adapter = ""}},
    {.name = "NotShown",
     .places = {{"UuidToStringW"},
                {"RpcStringFreeW"},
                {"WlanQueryInterface", 2, RADIO_STATE},
                {"WlanGetAvailableNetworkList", 3},
                {"WlanGetAvailableNetworkList", 4},
                {"WlanGetAvailableNetworkList", 5},
                {"WlanReasonCodeToString", 1},
                {"WlanReasonCodeToString", 5},
                {"WlanQueryInterface", 1, CONNECTION},
                {"WlanQueryInterface", 2, CONNECTION},
                {"WlanCloseHandle"}}},
    {.name = "RadioStaysOff",
     .scene = Scene::RADIO_OFF,
     .places = {{"WlanSetInterface"}},
     .events = {"WARNING_EVENT", "ERROR_NDIS_DOT11_POWER_STATE_INVALID",
                "ERROR_NDIS_DOT11_POWER_STATE_INVALID"},
     .display = {.list = "",
                 .chosen = "none",
                 .details = ":   0",
                 .radio = "RADIO_BUTTON_OFF",
                 .picture = "off"}},
    {.name = "NoList", .places = {{"WlanGetAvailableNetworkList", 1}}, .display = NOTHING_LISTED},
    {.name = "NoListForTheDetails",
     .places = {{"WlanGetAvailableNetworkList", 2}},
     .display = NOTHING_SHOWN},
    {.name = "NoConnectionInAMeasurement",
     .places = {{"WlanQueryInterface", 3, CONNECTION}, {"WlanQueryInterface", 5, CONNECTION}},
     .display = QUALITY_UNASKED_ONCE},
    {.name = "NoRadioState",
     .places = {{"WlanQueryInterface", 3, RADIO_STATE}},
     .display = RADIO_UNKNOWN},

    // The interfaces are listed on a handle that is opened anew, and so is the radio asked for.
    {.name = "SecondOpeningOfTheDevice",
     .scene = Scene::FIRST_REGISTRATION_FAILS,
     .places = {{"WlanOpenHandle", 2}, {"UuidFromStringW", 2}, {"WlanRegisterNotification", 2}},
     .events = {"WARNING_EVENT"},
     .display = {.adapter = ""}},
    // No PHY is known until the next refresh, and one that does not exist reads as off.
    {.name = "ThirdOpeningOfTheDevice",
     .scene = Scene::FIRST_REGISTRATION_FAILS,
     .places = {{"WlanRegisterNotification", 3}},
     .events = {"WARNING_EVENT"},
     .display = {.radio = "HARDWARE_SWITCH_OFF", .picture = "greyed off"}},
    {.name = "SecondClosing",
     .scene = Scene::FIRST_REGISTRATION_FAILS,
     .places = {{"WlanCloseHandle", 2}},
     .events = {"WARNING_EVENT"}},

    {.name = "NoInterfacesInASecondDialog",
     .scene = Scene::SECOND_DIALOG,
     .places = {{"WlanEnumInterfaces", 2}},
     .display = {.adapter = ""}},
    {.name = "NotShownInASecondDialog",
     .scene = Scene::SECOND_DIALOG,
     .places = {{"UuidToStringW", 2}, {"RpcStringFreeW", 2}}},
};

void PrintTo(const OpeningRow& row, std::ostream* out) {
    *out << row.name;
}

class OpeningFaults : public DialogFaults, public testing::WithParamInterface<OpeningRow> {
protected:
    void openWith(const Place& place, std::uint32_t code) {
        const OpeningRow& row = GetParam();
        startRadio(test::atticAndCellar(row.scene == Scene::RADIO_OFF ? test::OFF : test::ON));
        if (row.scene == Scene::FIRST_REGISTRATION_FAILS) {
            radio().addFault(
                {.function = "WlanRegisterNotification", .nth = 1, .code = ERROR_GEN_FAILURE});
        }
        radio().addFault(place.failingWith(code));
        if (row.scene == Scene::SECOND_DIALOG) {
            runTest({});
        }
        const std::size_t eventsBefore = raised().size();
        EXPECT_EQ(runTest({[&](Dialog& dialog) {
                      EXPECT_EQ(textOn(dialog), text(row.display));
                      EXPECT_TRUE(test::timerRuns(dialog));
                  }}),
                  tesk5::TestResult::COMPLETED());
        expectEvents(row.events, place, code, eventsBefore);
        const std::string function = place.function;
        test::expectDeliberateLeaksAlone(radio(), function == "WlanCloseHandle" ? 1 : 0,
                                         function == "RpcStringFreeW" ? 1 : 0);
    }
};

TEST_P(OpeningFaults, LeadToTheirRowsOutcome) {
    for (const Place& place : GetParam().places) {
        for (const std::uint32_t code : test::errorsOf(place.function)) {
            SCOPED_TRACE(place.name() + " fails with " + std::to_string(code));
            openWith(place, code);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(EveryCall, OpeningFaults, testing::ValuesIn(openingRows),
                         [](const auto& row) { return std::string(row.param.name); });

// --- Later on ------------------------------------------------------------------------------------

void refresh(Dialog& dialog) {
    dialog.populateAvailableNetworks();
    dialog.updateSelectedNetworkInformation();
}

struct LaterRow {
    const char* name;
    void (*act)(Dialog& dialog);
    std::vector<Place> places; ///< counted from the act on
    Display display = {};
    const char* connection = nullptr; ///< key of the text; null: as it was
};

const LaterRow laterRows[] = {
    {.name = "NoConnectionAtATick",
     .act = [](Dialog& dialog) { test::tick(dialog); },
     .places = {{"WlanQueryInterface", 1, CONNECTION}},
     .connection = "ERROR_INVALID_STATE"},
    {.name = "NoScanAtATick",
     .act = [](Dialog& dialog) { test::tick(dialog); },
     .places = {{"WlanQueryInterface", 1, BACKGROUND_SCAN}, {"WlanScan", 1}},
     .connection = "VALID_STATE"},
    {.name = "NoListAtARefresh",
     .act = refresh,
     .places = {{"WlanGetAvailableNetworkList", 1}},
     .display = NOTHING_LISTED},
    {.name = "NotShownAtARefresh",
     .act = refresh,
     .places = {{"WlanGetAvailableNetworkList", 2},
                {"WlanGetAvailableNetworkList", 3},
                {"WlanReasonCodeToString", 2}}},
    {.name = "NoConnectionInAMeasurement",
     .act = refresh,
     .places = {{"WlanQueryInterface", 4, CONNECTION}},
     .display = QUALITY_UNASKED_ONCE},
    {.name = "NoRadioStateAtARefresh",
     .act = refresh,
     .places = {{"WlanQueryInterface", 1, RADIO_STATE}},
     .display = RADIO_UNKNOWN},
    // A radio whose state cannot be read counts as off: the click only updates the picture, and the
    // next reading restores it.
    {.name = "NotShownAtAClick",
     .act = [](Dialog& dialog) { test::click(dialog, IDC_RADIO_ON_IMAGE); },
     .places = {{"WlanQueryInterface", 1, RADIO_STATE}, {"WlanSetInterface", 1}}},
    {.name = "NoRadioStateAfterAClick",
     .act = [](Dialog& dialog) { test::click(dialog, IDC_RADIO_ON_IMAGE); },
     .places = {{"WlanQueryInterface", 2, RADIO_STATE}},
     .display = RADIO_UNKNOWN},
};

void PrintTo(const LaterRow& row, std::ostream* out) {
    *out << row.name;
}

class LaterFaults : public DialogFaults, public testing::WithParamInterface<LaterRow> {
protected:
    void actWith(const Place& place, std::uint32_t code, Dialog& dialog) {
        const LaterRow& row = GetParam();
        radio().settle();
        const std::size_t eventsBefore = raised().size();
        radio().addFault(place.failingWith(code));
        const std::string connection = test::shown(dialog, IDC_CONNECTION_STATE);
        row.act(dialog);
        EXPECT_EQ(textOn(dialog), text(row.display));
        EXPECT_EQ(test::shown(dialog, IDC_CONNECTION_STATE),
                  row.connection == nullptr ? connection : localized(row.connection));
        expectEvents({}, place, code, eventsBefore);

        radio().clearFaults();
        radio().setRadio(0, 0, test::ON, test::ON);
        refresh(dialog);
        EXPECT_EQ(textOn(dialog), text(Display{}));
    }
};

TEST_P(LaterFaults, LeadToTheirRowsOutcomeAndToNothingLater) {
    startRadio(test::atticAndCellar());
    std::vector<test::Step> steps;
    for (const Place& place : GetParam().places) {
        for (const std::uint32_t code : test::errorsOf(place.function)) {
            steps.emplace_back([this, &place, code](Dialog& dialog) {
                SCOPED_TRACE(place.name() + " fails with " + std::to_string(code));
                actWith(place, code, dialog);
            });
        }
    }
    EXPECT_EQ(runTest(std::move(steps)), tesk5::TestResult::COMPLETED());
    EXPECT_EQ(journal().count("opens"), 1); // the same dialog all along
    test::expectDeliberateLeaksAlone(radio(), 0);
}

INSTANTIATE_TEST_SUITE_P(EveryCall, LaterFaults, testing::ValuesIn(laterRows),
                         [](const auto& row) { return std::string(row.param.name); });

// Each function that can fail has a fault at its first and at a later call.
TEST(DialogFaultTables, NameEachFunctionThatTheDialogCalls) {
    for (const test::FunctionErrors& each : test::documentedErrors()) {
        const std::string function = each.function;
        if (function == "WlanFreeMemory" || function == "WlanGetNetworkBssList") {
            continue; // returns nothing; is called by the other test alone
        }
        // Its scan is the dialog's first one as well as one of later ticks.
        bool first = function == "WlanScan";
        bool later = false;
        for (const OpeningRow& row : openingRows) {
            for (const Place& place : row.places) {
                first = first || (function == place.function && place.nth == 1);
                later = later || (function == place.function && place.nth > 1);
            }
        }
        for (const LaterRow& row : laterRows) {
            for (const Place& place : row.places) {
                later = later || function == place.function;
            }
        }
        EXPECT_TRUE(first) << function;
        EXPECT_TRUE(later) << function;
    }
}

} // namespace
