// What the doctor says of an adapter that is to measure levels.
#include "SignalDoctor.h"

#include "SignalTest.h"

#include <support/SystemText.h>

#include <tesk5/Language.h>
#include <tesk5/Texts.h>

namespace test {
namespace {

using radiosim::AccessPoint;
using radiosim::Bss;
using radiosim::Scenario;
using tesk5::ExaminationDepth;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class SignalDoctor : public SignalTest {
protected:
    SignalDoctor() { tesk5::Language::current().set("en"); }

    // What it says: "ok: ..." or "problem: ...".
    static std::vector<std::string> sayings(ExaminationDepth depth = ExaminationDepth::THOROUGH,
                                            tesk5::Findings findings = {}) {
        const std::size_t before = findings.size();
        examineForLevels(device(), depth, findings);
        std::vector<std::string> lines;
        for (std::size_t i = before; i < findings.size(); ++i) {
            lines.push_back((findings[i].good ? "ok: " : "problem: ") + message(findings[i]));
        }
        return lines;
    }
    std::vector<std::string> sayingsIn(Scenario scenario,
                                       ExaminationDepth depth = ExaminationDepth::THOROUGH) {
        startRadio(std::move(scenario));
        return sayings(depth);
    }
};

TEST_F(SignalDoctor, NamesWhatIsHeardAndTheLevelOfTheTarget) {
    startRadio({{.ssid = "Office", .bss = {{radioAt(-70, 1)}}},
                {.ssid = "Lab", .bss = {{radioAt(-50, 0), radioAt(-52, 2)}}},
                {.ssid = "", .bss = {{radioAt(-40, 3)}}}});
    EXPECT_THAT(
        sayings(),
        ElementsAre(
            HasSubstr(R"(radios heard: 4. The strongest: "" (-40 dBm), "Lab" (-50 dBm), "Office")"),
            HasSubstr(R"(hears "Lab": 02:00:00:00:01:00, 2437 MHz, -50 dBm; )"
                      "02:00:00:00:01:02, 2437 MHz, -52 dBm.")));
    EXPECT_EQ(sayings()[1].substr(0, 4), "ok: ");
    EXPECT_EQ(radio().leaks(), radiosim::Leaks());
}

TEST_F(SignalDoctor, AsksForTheAddressWhereANameStandsForDifferentLevels) {
    startRadio({{.ssid = "Lab", .bss = {{radioAt(-50, 0), radioAt(-65, 1)}}}});
    EXPECT_THAT(sayings().back(), HasSubstr("problem: "));
    EXPECT_THAT(sayings().back(), HasSubstr("02:00:00:00:01:01, 2437 MHz, -65 dBm. Name one by"));
    give({{parameters::bssid, "02:00:00:00:01:01"}});
    EXPECT_THAT(sayings().back(), HasSubstr("ok: "));
}

TEST_F(SignalDoctor, DoesNotTakeAnOldEntryForAnAccessPointThatIsHeard) {
    Bss dead = radioAt(-50, 0);
    dead.heardUntil = 0ms;
    startRadio({{.ssid = "Lab", .bss = {{dead}}}, {.ssid = "Office", .bss = {{radioAt(-70, 1)}}}});
    EXPECT_THAT(sayings().back(), HasSubstr(R"(problem: Simulated Wireless Adapter does not hear )"
                                            R"("Lab". Check its name)"));
    EXPECT_THAT(sayings().back(), HasSubstr(R"(Heard: "Office" (-70 dBm).)"));
}

TEST_F(SignalDoctor, LooksForNothingWithoutATarget) {
    give({{parameters::ssid, ""}});
    startRadio({{.ssid = "Lab", .bss = {{radioAt(-50, 0)}}}});
    EXPECT_THAT(sayings(), ElementsAre(HasSubstr("radios heard: 1.")));
    startRadio(std::vector<AccessPoint>());
    EXPECT_THAT(sayings(), ElementsAre(HasSubstr("sees no network at all")));
}

TEST_F(SignalDoctor, SaysWhichSwitchOfTheRadioIsOff) {
    EXPECT_THAT(sayingsIn({.interfaces = {{.phys = {{.hardware = 2}}}}}),
                ElementsAre(HasSubstr("hardware switch")));
    EXPECT_THAT(sayingsIn({.interfaces = {{.phys = {{.software = 2}}}}}),
                ElementsAre(HasSubstr(ofSystem("airplane mode off", "rfkill"))));
    EXPECT_THAT(sayings(ExaminationDepth::QUICK,
                        {{"DOCTOR_INTERFACE_DOWN", false, {{"Interface", "wlan0"}}}}),
                IsEmpty());
}

TEST_F(SignalDoctor, NamesTheRemedyOnceWhereTheSystemDeniesAccess) {
    const char* const LIST = "WlanGetNetworkBssList";
    startRadio(Scenario{.faults = {{.function = LIST, .code = ERROR_ACCESS_DENIED}}});
    EXPECT_THAT(sayings(ExaminationDepth::QUICK),
                ElementsAre(HasSubstr(ofSystem("Let desktop apps access", "CAP_NET_ADMIN"))));
    startRadio(Scenario{.faults = {{.function = "WlanScan", .code = ERROR_ACCESS_DENIED}}});
    EXPECT_EQ(sayings().size(), 1U);
    startRadio(Scenario{.faults = {{.function = LIST, .code = ERROR_GEN_FAILURE}}});
    EXPECT_THAT(sayings(), ElementsAre(HasSubstr("(WlanGetNetworkBssList: error 31)")));
}

TEST_F(SignalDoctor, DoesNotWaitAfterARun) {
    startRadio({{.ssid = "Lab", .bss = {{radioAt(-50, 0)}}}});
    EXPECT_THAT(sayings(ExaminationDepth::QUICK), IsEmpty());
    EXPECT_THAT(clock().sleeps(), IsEmpty());
}

} // namespace
} // namespace test
