// The module's half of the doctor: radio, access to Wi-Fi information, and names, each finding in
// its own words.
#include "ModuleTest.h"

#include <MRLrAntenna.h>
#include <ModuleObjects.h>
#include <WirelessDoctor.h>

#include <tesk5/Language.h>
#include <tesk5/Texts.h>

namespace {

using radiosim::AccessPoint;
using radiosim::Phy;
using tesk5::ExaminationDepth;
using tesk5::Findings;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

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
    void startRadioWith(const Phy& phy) {
        radiosim::Scenario scenario;
        scenario.interfaces.front().phys = {phy};
        startRadio(std::move(scenario));
    }
    void startRadioWith(radiosim::Fault fault) {
        radiosim::Scenario scenario;
        scenario.faults = {std::move(fault)};
        startRadio(std::move(scenario));
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
    startRadioWith({.function = "WlanScan", .code = ERROR_BUSY});
    EXPECT_EQ(sayings(ExaminationDepth::THOROUGH).front(), "ok: Card: the radio is on.");
    EXPECT_THAT(clock().sleeps(), IsEmpty());
    EXPECT_EQ(radio().callCount("WlanGetAvailableNetworkList"), 1U);
}

TEST_F(WirelessDoctor, DistinguishesTheHardwareSwitchFromTheOneInWindows) {
    const std::string hardware =
        "problem: Card: the radio is switched off by the computer's hardware switch. Turn it on "
        "with the wireless switch or the wireless key of the computer.";
    const std::string software =
        "problem: Card: the radio is switched off in Windows. In Settings > Network & internet "
        "(ms-settings:network), turn Wi-Fi on and airplane mode off.";
    startRadioWith({.software = ON, .hardware = OFF});
    EXPECT_THAT(sayings(), ElementsAre(hardware));
    startRadioWith({.software = OFF, .hardware = ON});
    EXPECT_THAT(sayings(), ElementsAre(software));
    startRadioWith({.software = OFF, .hardware = OFF});
    EXPECT_THAT(sayings(), ElementsAre(hardware, software));
}

TEST_F(WirelessDoctor, TakesAnUnknownRadioForOffAsTheTestDoes) {
    const std::string unknown =
        "problem: Card: the driver does not report whether the radio is on, and the tests treat "
        "that as off. Install the adapter's current driver.";
    startRadioWith({.software = UNKNOWN, .hardware = ON});
    EXPECT_THAT(sayings(), ElementsAre(unknown));
    startRadioWith({.software = ON, .hardware = UNKNOWN});
    EXPECT_THAT(sayings(), ElementsAre(unknown));
    startRadioWith({.function = "WlanQueryInterface", .dataSize = 16});
    EXPECT_THAT(sayings(), ElementsAre(unknown));
    startRadioWith({.function = "WlanQueryInterface", .noData = true});
    EXPECT_THAT(sayings(), ElementsAre(unknown));
}

TEST_F(WirelessDoctor, NamesTheLocationSettingWhenWindowsDeniesTheList) {
    startRadioWith({.function = "WlanGetAvailableNetworkList", .code = ERROR_ACCESS_DENIED});
    EXPECT_THAT(
        sayings(),
        ElementsAre("ok: Card: the radio is on.",
                    "problem: Card: Windows denies access to Wi-Fi information "
                    "(WlanGetAvailableNetworkList: error 5). In Settings > Privacy & security > "
                    "Location (ms-settings:privacy-location), turn on \"Location services\" and "
                    "\"Let desktop apps access your location\"."));
}

TEST_F(WirelessDoctor, NamesTheLocationSettingOnceWhenWindowsDeniesTheScanToo) {
    radiosim::Scenario scenario;
    scenario.faults = {{.function = "WlanScan", .code = ERROR_ACCESS_DENIED},
                       {.function = "WlanGetAvailableNetworkList", .code = ERROR_ACCESS_DENIED}};
    startRadio(std::move(scenario));
    const std::vector<std::string> lines = sayings(ExaminationDepth::THOROUGH);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_THAT(lines.back(), testing::HasSubstr("(WlanScan: error 5). In Settings > Privacy"));
    EXPECT_THAT(clock().sleeps(), IsEmpty());
}

TEST_F(WirelessDoctor, NamesTheCallThatFailsForAnotherReason) {
    startRadioWith({.function = "WlanGetAvailableNetworkList", .code = ERROR_GEN_FAILURE});
    EXPECT_THAT(sayings(), Contains("problem: Card: the adapter does not answer "
                                    "(WlanGetAvailableNetworkList: error 31). Disable it in Device "
                                    "Manager and enable it again; if that does not help, install "
                                    "its current driver."));
    startRadioWith({.function = "WlanQueryInterface", .code = ERROR_GEN_FAILURE});
    EXPECT_THAT(sayings(),
                ElementsAre(testing::HasSubstr("(WlanQueryInterface: error 31). Disable it")));
}

TEST_F(WirelessDoctor, LeavesAServiceThatDoesNotAnswerToTheFramework) {
    startRadioWith({.function = "WlanOpenHandle", .code = ERROR_SERVICE_NOT_ACTIVE});
    EXPECT_THAT(sayings(), IsEmpty());
    startRadioWith({.function = "WlanEnumInterfaces", .code = ERROR_SERVICE_NOT_ACTIVE});
    EXPECT_THAT(sayings(), IsEmpty());
}

TEST_F(WirelessDoctor, SaysThatTheServiceIsTooOld) {
    radiosim::Scenario scenario;
    scenario.serviceVersion = 1;
    startRadio(std::move(scenario));
    EXPECT_THAT(sayings(),
                ElementsAre("problem: Card: the wireless service of this Windows has version 1 "
                            "of its interface, and the tests need version 2. Run them on a current "
                            "Windows."));
}

TEST_F(WirelessDoctor, SaysThatTheAdapterIsGone) {
    const char* other = "\\DEVICE\\{00000000-1111-2222-3333-ABCDEFABCDEF}";
    const std::string gone =
        std::string("problem: Card: Windows has no wireless adapter with the system name \"") +
        other +
        "\". Plug the adapter in and enable it in Device Manager; if the devices come from a file, "
        "correct the name there.";
    EXPECT_THAT(sayingsOn(deviceWith({{"DeviceSystemName", other}})), ElementsAre(gone));
    EXPECT_THAT(
        sayingsOn(deviceWith({{"DeviceSystemName", "x"}, {"VirtualDeviceSystemName", other}})),
        ElementsAre(gone));
    EXPECT_EQ(sayingsOn(deviceWith({})).size(), 1U);
}

TEST_F(WirelessDoctor, SaysThatNoNetworkIsVisible) {
    startRadio(std::vector<AccessPoint>{});
    EXPECT_THAT(sayings(),
                ElementsAre("ok: Card: the radio is on.",
                            "problem: Card sees no network at all. Check that its antennas are "
                            "connected, and that an access point is switched on and within "
                            "reach."));
    startRadio({{.hidden = true}, {.ssid = std::string("\0A", 2)}});
    EXPECT_EQ(sayings().back(),
              "problem: Card sees only networks that hide their names (2), and the tests leave "
              "these out. Let the access point send its name.");
    startRadioWith({.function = "WlanGetAvailableNetworkList", .noData = true});
    EXPECT_THAT(sayings().back(), testing::HasSubstr("sees no network at all"));
}

TEST_F(WirelessDoctor, SaysThatTheNameIsVisible) {
    startRadio({{.ssid = "Lab", .signal = 61U}});
    EXPECT_EQ(sayingOnName("Lab"), "ok: Card sees \"Lab\" at 61 %.");
    EXPECT_EQ(sayingOnName("  Lab "), "ok: Card sees \"Lab\" at 61 %.");
}

TEST_F(WirelessDoctor, SaysThatLetterCaseAndBlanksDoNotCount) {
    startRadio({{.ssid = " LAB ", .signal = 61U}, {.ssid = "Office", .signal = 50U}});
    EXPECT_EQ(sayingOnName("Lab"),
              "ok: Card sees \" LAB \" at 61 %. The test takes it for \"Lab\": letter case and "
              "blanks at the ends do not count.");
}

TEST_F(WirelessDoctor, NamesTheNetworkThatTheTestTakesFromSeveral) {
    startRadio({{.ssid = "LAB", .signal = 40U}, {.ssid = "Lab", .signal = 70U}});
    EXPECT_THAT(sayingOnName("Lab"), testing::StartsWith("ok: Card sees \"LAB\" at 40 %."));
}

TEST_F(WirelessDoctor, NamesTheNetworkThatHidesAnother) {
    startRadio({{.ssid = "Lab", .signal = 40U}, {.ssid = "Lab-5G", .signal = 70U}});
    EXPECT_EQ(sayingOnName("lab-5g"),
              "problem: Card sees \"Lab-5G\" at 70 %, but the test does not: in its list of "
              "networks, a name that contains an earlier one is left out, and \"Lab\" comes "
              "earlier. Switch \"Lab\" off for the test, rename one of the two, or measure "
              "\"Lab\".");
}

TEST_F(WirelessDoctor, HidesNoNameBehindOneThatComesLaterOrIsItselfLeftOut) {
    startRadio({{.ssid = "Lab-5G", .signal = 70U}, {.ssid = "Lab", .signal = 40U}});
    EXPECT_EQ(sayingOnName("Lab-5G"), "ok: Card sees \"Lab-5G\" at 70 %.");
    // "a" stands for "ab" and "abc": the finding names a network that is in the list.
    startRadio({{.ssid = "a"}, {.ssid = "ab"}, {.ssid = "abc"}});
    EXPECT_THAT(sayingOnName("abc"), testing::HasSubstr("and \"a\" comes earlier"));
}

TEST_F(WirelessDoctor, DistinguishesAPartOfANameFromTheWhole) {
    startRadio({{.ssid = "Office", .signal = 50U}, {.ssid = "Lab-5G", .signal = 70U}});
    EXPECT_EQ(sayingOnName("lab"),
              "problem: Card sees no network \"lab\", but \"Lab-5G\" at 70 %, of which it is only "
              "a part. The test needs the whole name.");
}

TEST_F(WirelessDoctor, ShowsHowTheTestReadsANameBeyondPlainLetters) {
    startRadio({{.ssid = "Caf\xC3\xA9", .signal = 70U}});
    EXPECT_EQ(sayingOnName("Caf\xC3\xA9"),
              "problem: Card sees \"Caf\xC3\xA9\" at 70 %, but the test does not: it reads names "
              "byte by byte, and this one as \"Caf\xC3\x83\xC2\xA9\". Give the test that name, or "
              "give the access point a name of plain letters and digits.");
    EXPECT_THAT(sayingOnName("Caf\xC3\x83\xC2\xA9"), testing::StartsWith("ok: "));
}

TEST_F(WirelessDoctor, SaysThatANameOfBlanksIsNeverFound) {
    startRadio({{.ssid = "   "}});
    EXPECT_EQ(sayingOnName("  "), "problem: The name of the access point consists of blanks, and "
                                  "the test never finds such a name. Give the name of the access "
                                  "point.");
}

TEST_F(WirelessDoctor, ShowsTheNamesThatAreVisibleInsteadOfTheGivenOne) {
    startRadio({{.ssid = "Office"}, {.ssid = "Office-5G"}, {.hidden = true}, {.ssid = "Bench"}});
    EXPECT_EQ(sayingOnName("Lab"),
              "problem: Card sees no network \"Lab\". Check its spelling, and that the access "
              "point is switched on, within reach and sends its name. Visible: \"Office\", "
              "\"Bench\".");
    std::vector<AccessPoint> many;
    for (char letter = 'a'; letter <= 'k'; ++letter) {
        many.push_back({.ssid = std::string(1, letter)});
    }
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

} // namespace
