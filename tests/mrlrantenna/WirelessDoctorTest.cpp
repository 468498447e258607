// The module's half of the doctor: radio, access to Wi-Fi information, and names, each finding in
// its own words.
#include "ModuleTest.h"

#include <support/SystemText.h>

#include <MRLrAntenna.h>
#include <ModuleObjects.h>
#include <WirelessDoctor.h>

#include <tesk5/Language.h>
#include <tesk5/Texts.h>

namespace {

using radiosim::AccessPoint;
using radiosim::Scenario;
using tesk5::ExaminationDepth;
using tesk5::Findings;
using test::ofSystem;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* CARD = "Simulated Wireless Adapter";
constexpr int ON = 1;
constexpr int OFF = 2;
constexpr int UNKNOWN = 0;

class WirelessDoctor : public test::ModuleTest {
protected:
    WirelessDoctor() {
        tesk5::Language::current().set("en");
        parameters::ssid->reset();
        startRadio({{.ssid = "Office", .signal = 55U}});
    }
    ~WirelessDoctor() override { parameters::ssid->reset(); }

    // What it says of `device`: "ok: ..." or "problem: ...".
    static std::vector<std::string> sayingsOn(const tesk5::DiagDevice& device,
                                              ExaminationDepth depth = ExaminationDepth::QUICK) {
        Findings findings;
        examineWirelessDevice(device, depth, findings);
        std::vector<std::string> lines;
        for (const tesk5::Finding& finding : findings) {
            std::string text = message(finding);
            const std::size_t card = text.find(CARD);
            if (card != std::string::npos) {
                text.replace(card, std::string(CARD).size(), "Card");
            }
            lines.push_back((finding.good ? "ok: " : "problem: ") + text);
        }
        return lines;
    }
    static std::vector<std::string> sayings(ExaminationDepth depth = ExaminationDepth::QUICK) {
        return sayingsOn(device(), depth);
    }
    // The last finding when the parameter "SSID" is `name`.
    static std::string sayingOnName(const char* name) {
        parameters::ssid->set(name);
        return sayings().back();
    }
    void TearDown() override {
        EXPECT_EQ(radio().leaks(), radiosim::Leaks());
        EXPECT_THAT(raised(), IsEmpty());
        ModuleTest::TearDown();
    }
};

TEST_F(WirelessDoctor, SaysThatRadioAndNetworksAreThere) {
    EXPECT_THAT(sayings(), ElementsAre("ok: Card: the radio is on.",
                                       "ok: Card: visible networks with a name: 1."));
}

TEST_F(WirelessDoctor, AsksForTheListThatTheTestsAskFor) {
    sayings();
    EXPECT_THAT(radio().callTexts(),
                Contains(testing::AllOf(testing::StartsWith("WlanGetAvailableNetworkList "),
                                        HasSubstr("\"flags\":0,"))));
}

TEST_F(WirelessDoctor, WaitsForAScanOfItsOwnWhenItMay) {
    startRadio({{.ssid = "Lab", .visible = radiosim::Visible::AFTER_SCAN}});
    EXPECT_THAT(sayings(ExaminationDepth::THOROUGH),
                Contains("ok: Card: visible networks with a name: 1."));
    EXPECT_THAT(clock().sleeps(), ElementsAre(4000));
    EXPECT_EQ(radio().callCount("WlanScan"), 1U);
}

TEST_F(WirelessDoctor, NeitherScansNorWaitsAfterARun) {
    sayings(ExaminationDepth::QUICK);
    EXPECT_THAT(clock().sleeps(), IsEmpty());
    EXPECT_EQ(radio().callCount("WlanScan"), 0U);
}

TEST_F(WirelessDoctor, GoesOnWithoutAScanThatFails) {
    startRadio(Scenario{.faults = {{.function = "WlanScan", .code = ERROR_BUSY}}});
    EXPECT_EQ(sayings(ExaminationDepth::THOROUGH).front(), "ok: Card: the radio is on.");
    EXPECT_THAT(clock().sleeps(), IsEmpty());
    EXPECT_EQ(radio().callCount("WlanGetAvailableNetworkList"), 1U);
}

TEST_F(WirelessDoctor, NamesTheRemedyOnceWhenTheSystemDeniesTheScanToo) {
    startRadio(Scenario{
        .faults = {{.function = "WlanScan", .code = ERROR_ACCESS_DENIED},
                   {.function = "WlanGetAvailableNetworkList", .code = ERROR_ACCESS_DENIED}}});
    const std::vector<std::string> lines = sayings(ExaminationDepth::THOROUGH);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_THAT(lines.back(), HasSubstr(ofSystem("(WlanScan: error 5). In Settings > Privacy",
                                                 "needs the capability CAP_NET_ADMIN. Start it")));
    EXPECT_THAT(clock().sleeps(), IsEmpty());
}

TEST_F(WirelessDoctor, LeavesOutAFailureThatTheCheckOfTheMachineExplains) {
    const DWORD off = ERROR_NDIS_DOT11_POWER_STATE_INVALID;
    startRadio(Scenario{.faults = {{.function = "WlanGetAvailableNetworkList", .code = off}}});
    Findings findings = {{"DOCTOR_INTERFACE_DOWN", false, {{"Interface", "wlan0"}}}};
    examineWirelessDevice(device(), ExaminationDepth::QUICK, findings);
    ASSERT_EQ(findings.size(), 2U);
    EXPECT_EQ(findings.back().key, "DOCTOR_RADIO_ON");
    startRadio(Scenario{.faults = {{.function = "WlanGetAvailableNetworkList", .code = off}}});
    EXPECT_THAT(sayings().back(), HasSubstr("(WlanGetAvailableNetworkList: error "));
}

TEST_F(WirelessDoctor, LeavesOutARadioThatIsOffBecauseItsInterfaceIsDown) {
    startRadio(Scenario{.interfaces = {{.phys = {{.software = 2}}}}});
    Findings findings = {{"DOCTOR_INTERFACE_DOWN", false, {{"Interface", "wlan0"}}}};
    examineWirelessDevice(device(), ExaminationDepth::QUICK, findings);
    EXPECT_EQ(findings.size(), 1U);
}

TEST_F(WirelessDoctor, SaysNothingOfAnEmptyListWhereNothingCouldBeScanned) {
    startRadio(Scenario{.faults = {{.function = "WlanScan", .code = ERROR_ACCESS_DENIED}}});
    Findings findings;
    examineWirelessDevice(device(), ExaminationDepth::THOROUGH, findings);
    for (const tesk5::Finding& finding : findings) {
        EXPECT_NE(finding.key, "DOCTOR_NO_NETWORKS");
    }
    EXPECT_FALSE(findings.empty());
}

struct Radio {
    const char* what;
    Scenario scenario;
    std::vector<std::string> sayings;
};

class WirelessDoctorOnARadio : public WirelessDoctor, public testing::WithParamInterface<Radio> {};

TEST_P(WirelessDoctorOnARadio, SaysWhatKeepsItFromWorking) {
    startRadio(GetParam().scenario);
    EXPECT_EQ(sayings(), GetParam().sayings);
}

Scenario with(const radiosim::Phy& phy) {
    return {.interfaces = {{.phys = {phy}}}};
}
Scenario with(const radiosim::Fault& fault) {
    return {.faults = {fault}};
}
Scenario seeing(const std::vector<AccessPoint>& accessPoints) {
    return {.interfaces = {{.accessPoints = accessPoints}}};
}

const std::string RADIO_ON = "ok: Card: the radio is on.";
const std::string HARDWARE_OFF =
    "problem: Card: the radio is switched off by the computer's hardware switch. Turn it on with "
    "the wireless switch or the wireless key of the computer.";
const std::string SOFTWARE_OFF = ofSystem(
    "problem: Card: the radio is switched off in Windows. In Settings > Network & internet "
    "(ms-settings:network), turn Wi-Fi on and airplane mode off.",
    "problem: Card: the radio is blocked by software (rfkill). Type \"sudo rfkill unblock wlan\", "
    "or "
    "turn Wi-Fi on and airplane mode off in the settings of the desktop.");
const std::string RADIO_UNKNOWN =
    "problem: Card: the driver does not report whether the radio is on, and the tests treat that "
    "as off. Install the adapter's current driver.";
const std::string NO_NETWORK =
    "problem: Card sees no network at all. Check that its antennas are connected, and that an "
    "access point is switched on and within reach.";
const std::string NO_ANSWER_TO = "problem: Card: the adapter does not answer (";
const std::string REPAIR = ofSystem(
    ": error 31). Disable it in Device Manager and enable it again; if that does not help, "
    "install its current driver.",
    ": error 31). Unplug it and plug it in again, or load its driver again; \"sudo dmesg\" "
    "may say more.");
// Of Linux without what it depends on: the same for each device and function.
const std::string DENIED = ofSystem(
    "problem: Card: Windows denies access to Wi-Fi information "
    "(WlanGetAvailableNetworkList: error 5). In Settings > Privacy & security > Location "
    "(ms-settings:privacy-location), turn on \"Location services\" and \"Let desktop apps "
    "access your location\".",
    ("problem: To scan for networks, the program needs the capability CAP_NET_ADMIN. Start "
     "it with sudo, or type \"sudo setcap cap_net_admin+ep " +
     mrl::System::executable().string() +
     "\", or, where it is installed as a package, answer yes in \"sudo dpkg-reconfigure "
     "-plow mrlrantenna\". Without it the tests see what other programs have scanned.")
        .c_str());

const Radio radios[] = {
    {"SwitchedOffInHardware", with({.software = ON, .hardware = OFF}), {HARDWARE_OFF}},
    {"SwitchedOffInSoftware", with({.software = OFF, .hardware = ON}), {SOFTWARE_OFF}},
    {"SwitchedOffInBoth", with({.software = OFF, .hardware = OFF}), {HARDWARE_OFF, SOFTWARE_OFF}},
    // Unknown is off, as in the test.
    {"OfUnknownSoftware", with({.software = UNKNOWN, .hardware = ON}), {RADIO_UNKNOWN}},
    {"OfUnknownHardware", with({.software = ON, .hardware = UNKNOWN}), {RADIO_UNKNOWN}},
    {"OfAnotherSize", with({.function = "WlanQueryInterface", .dataSize = 16}), {RADIO_UNKNOWN}},
    {"WithoutAState", with({.function = "WlanQueryInterface", .noData = true}), {RADIO_UNKNOWN}},
    {"ThatFails",
     with({.function = "WlanQueryInterface", .code = ERROR_GEN_FAILURE}),
     {NO_ANSWER_TO + "WlanQueryInterface" + REPAIR}},
    {"WhoseListFails",
     with({.function = "WlanGetAvailableNetworkList", .code = ERROR_GEN_FAILURE}),
     {RADIO_ON, NO_ANSWER_TO + "WlanGetAvailableNetworkList" + REPAIR}},
    {"WhoseListIsDenied",
     with({.function = "WlanGetAvailableNetworkList", .code = ERROR_ACCESS_DENIED}),
     {RADIO_ON, DENIED}},
    {"WithoutAList",
     with({.function = "WlanGetAvailableNetworkList", .noData = true}),
     {RADIO_ON, NO_NETWORK}},
    {"WithoutNetworks", seeing({}), {RADIO_ON, NO_NETWORK}},
    {"WithHiddenNetworks",
     seeing({{.hidden = true}, {.ssid = std::string("\0A", 2)}}),
     {RADIO_ON, "problem: Card sees only networks that hide their names (2), and the tests leave "
                "these out. Let the access point send its name."}},
    // A service that does not answer is the framework's finding.
    {"WithoutAService", with({.function = "WlanOpenHandle", .code = 1062}), {}},
    {"WithoutInterfaces", with({.function = "WlanEnumInterfaces", .code = 1062}), {}},
    {"WithoutAListOfInterfaces", with({.function = "WlanEnumInterfaces", .noData = true}), {}},
    {"OfAnOldService",
     {.serviceVersion = 1},
     {"problem: Card: the wireless service of this Windows has version 1 of its interface, and the "
      "tests need version 2. Run them on a current Windows."}},
};
INSTANTIATE_TEST_SUITE_P(Radios, WirelessDoctorOnARadio, testing::ValuesIn(radios),
                         [](const auto& row) { return row.param.what; });

TEST_F(WirelessDoctor, SaysThatTheAdapterIsGone) {
    const char* other = "\\DEVICE\\{00000000-1111-2222-3333-ABCDEFABCDEF}";
    const std::string gone =
        "problem: Card: " +
        ofSystem("Windows has no wireless adapter with the system name \"",
                 "there is no wireless interface with the system name \"") +
        other +
        ofSystem(
            "\". Plug the adapter in and enable it in Device Manager; if the devices come from "
            "a file, correct the name there.",
            "\". Plug the adapter in; if the devices come from a file, correct the name there.");
    EXPECT_THAT(sayingsOn(deviceWith({{"DeviceSystemName", other}})), ElementsAre(gone));
    EXPECT_THAT(
        sayingsOn(deviceWith({{"DeviceSystemName", "x"}, {"VirtualDeviceSystemName", other}})),
        ElementsAre(gone));
    EXPECT_EQ(sayingsOn(deviceWith({})).size(), 1U);
}

struct Name {
    std::vector<AccessPoint> visible;
    const char* name;
    std::string saying; ///< how it begins
};

class WirelessDoctorOnAName : public WirelessDoctor, public testing::WithParamInterface<Name> {};

TEST_P(WirelessDoctorOnAName, SaysWhatTheTestMakesOfIt) {
    startRadio(GetParam().visible);
    EXPECT_THAT(sayingOnName(GetParam().name), testing::StartsWith(GetParam().saying));
}

const Name givenNames[] = {
    {{{.ssid = "Lab", .signal = 61U}}, "  Lab ", "ok: Card sees \"Lab\" at 61%."},
    {{{.ssid = " LAB ", .signal = 61U}, {.ssid = "Office"}},
     "Lab",
     "ok: Card sees \" LAB \" at 61%. The test takes it for \"Lab\": letter case and blanks at "
     "the ends do not count."},
    // The network that the test takes from several.
    {{{.ssid = "LAB", .signal = 40U}, {.ssid = "Lab", .signal = 70U}},
     "Lab",
     "ok: Card sees \"LAB\" at 40%."},
    {{{.ssid = "Lab", .signal = 40U}, {.ssid = "Lab-5G", .signal = 70U}},
     "lab-5g",
     "problem: Card sees \"Lab-5G\" at 70%, but the test does not: in its list of networks, a "
     "name that contains an earlier one is left out, and \"Lab\" comes earlier. Switch \"Lab\" off "
     "for the test, rename one of the two, or measure \"Lab\"."},
    {{{.ssid = "Lab-5G", .signal = 70U}, {.ssid = "Lab"}},
     "Lab-5G",
     "ok: Card sees \"Lab-5G\" at 70%."},
    // "a" stands for "ab" and "abc": the finding names a network that is in the list.
    {{{.ssid = "a"}, {.ssid = "ab"}, {.ssid = "abc"}},
     "abc",
     "problem: Card sees \"abc\" at 50%, but the test does not: in its list of networks, a name "
     "that contains an earlier one is left out, and \"a\" comes earlier."},
    {{{.ssid = "Office"}, {.ssid = "Lab-5G", .signal = 70U}},
     "lab",
     "problem: Card sees no network \"lab\", but \"Lab-5G\" at 70%, of which it is only a part. "
     "The test needs the whole name."},
    {{{.ssid = "Caf\xC3\xA9", .signal = 70U}},
     "Caf\xC3\xA9",
     "problem: Card sees \"Caf\xC3\xA9\" at 70%, but the test does not: it reads names byte by "
     "byte, and this one as \"Caf\xC3\x83\xC2\xA9 [UTF-8: Caf\xC3\xA9]\". Write --set "
     "SSID=hex:436166C3A9, or give the access point a name of plain letters and digits."},
    {{{.ssid = "Caf\xC3\xA9", .signal = 70U}},
     "hex:436166C3A9",
     "ok: Card sees \"Caf\xC3\x83\xC2\xA9 [UTF-8: Caf\xC3\xA9]\" at 70%."},
    {{{.ssid = "Caf\xC3\xA9"}, {.ssid = "Caf\xE9"}},
     "Lab",
     "problem: Card sees no network \"Lab\". Check its spelling, and that the access point is "
     "switched on, within reach and sends its name. Visible: \"Caf\xC3\x83\xC2\xA9 [UTF-8: "
     "Caf\xC3\xA9]\", \"Caf\xC3\xA9\"."},
    {{{.ssid = "Caf\xC3\xA9"}}, "Caf\xC3\x83\xC2\xA9", "ok: "},
    {{{.ssid = "   "}},
     "  ",
     "problem: The name of the access point consists of blanks, and the test never finds such a "
     "name. Give the name of the access point."},
    {{{.ssid = "Office"}, {.ssid = "Office-5G"}, {.hidden = true}, {.ssid = "Bench"}},
     "Lab",
     "problem: Card sees no network \"Lab\". Check its spelling, and that the access point is "
     "switched on, within reach and sends its name. Visible: \"Office\", \"Bench\"."},
};
INSTANTIATE_TEST_SUITE_P(Names, WirelessDoctorOnAName, testing::ValuesIn(givenNames));

TEST_F(WirelessDoctor, ShowsTenOfTheNamesThatAreVisible) {
    std::vector<AccessPoint> many;
    for (char letter = 'a'; letter <= 'k'; ++letter) {
        many.push_back({.ssid = std::string(1, letter)});
    }
    many.insert(many.begin() + 1, {.ssid = "aa"}); // left out
    startRadio(many);
    EXPECT_THAT(sayingOnName("Lab"), testing::EndsWith("\"i\", \"j\", ...."));
}

TEST_F(WirelessDoctor, FindsExactlyTheNamesThatTheTestFinds) {
    startRadio(
        {{.ssid = "Office"}, {.ssid = "Office-5G"}, {.ssid = " lab"}, {.ssid = "Caf\xC3\xA9"}});
    for (const char* name : {"Office", "office", "Office-5G", "Lab", "la", "Caf\xC3\xA9", "None"}) {
        unsigned int strength = 0;
        bool radioOn = true;
        const bool found =
            getAccessPointSignalStrength(device(), mrl::String(name), strength, radioOn);
        EXPECT_EQ(sayingOnName(name).starts_with("ok: "), found) << name;
    }
    startRadio({{.ssid = "Office"}}); // the scans of the search leave blocks behind
}

TEST_F(WirelessDoctor, CountsTheNetworksThatTheTestsListKeepsAndNamesTheOthers) {
    startRadio({{.ssid = "Lab", .signal = 70U},
                {.ssid = "Lab-5G", .signal = 60U},
                {.ssid = "Office", .signal = 55U},
                {.ssid = "Guest Lab", .signal = 50U}});
    EXPECT_THAT(sayings(), testing::IsSupersetOf(
                               {"ok: Card: visible networks with a name: 2.",
                                "ok: Card: left out of the tests' list, because an earlier name is "
                                "a part of theirs: \"Lab-5G\", \"Guest Lab\"."}));
}

TEST_F(WirelessDoctor, ChecksTheParametersByTheRulesOfTheTest) {
    struct {
        const char* name;
        const char* warn;
        const char* fail;
        std::vector<std::string> partial;  // what is given
        std::vector<std::string> complete; // what a run needs
    } const rows[] = {
        {"Lab", "40", "20", {}, {"The parameters can be used."}},
        {"Lab", "", "", {}, {"No signal strength threshold is set."}},
        {"", "", "20", {}, {"No access point was named."}},
        {"Lab",
         "100",
         "",
         {"The parameter WarningSignalStrength is out of range."},
         {"The parameter WarningSignalStrength is out of range."}},
        {"Lab",
         "20",
         "20",
         {"The failing signal strength (20%) must be lower than the warning"},
         {"The failing signal strength (20%) must be lower than the warning"}},
        {"Lab,WarningSignalStrength=40",
         "40",
         "",
         {"The name \"Lab,WarningSignalStrength=40\" contains the parameter "
          "WarningSignalStrength."},
         {"The name \"Lab,WarningSignalStrength=40\" contains the parameter "
          "WarningSignalStrength."}},
        {"12345678901234567890123456789012", "40", "", {}, {"The parameters can be used."}},
        {"123456789012345678901234567890123",
         "40",
         "",
         {"The name \"123456789012345678901234567890123\" has 33 bytes"},
         {"The name \"123456789012345678901234567890123\" has 33 bytes"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        parameters::ssid->set(row.name);
        parameters::warningSignalStrength->set(row.warn);
        parameters::failingSignalStrength->set(row.fail);
        for (const bool complete : {false, true}) {
            const Findings findings = checkTestParameters(complete);
            const std::vector<std::string>& expected = complete ? row.complete : row.partial;
            ASSERT_EQ(findings.size(), expected.size());
            for (std::size_t i = 0; i < findings.size(); ++i) {
                EXPECT_THAT(message(findings[i]), testing::StartsWith(expected[i]));
                EXPECT_EQ(findings[i].good, findings[i].key == "DOCTOR_PARAMETERS_USABLE");
            }
        }
    }
    parameters::warningSignalStrength->reset();
    parameters::failingSignalStrength->reset();
}

} // namespace
