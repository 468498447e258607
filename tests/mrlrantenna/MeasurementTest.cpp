// What the verification test leaves behind besides its verdict: the number, and what else was seen.
#include "VerificationWithParameters.h"

namespace {

using tesk5::TestResult;
using testing::ElementsAre;
using testing::IsEmpty;

class VerificationMeasures : public test::VerificationWithParameters {
protected:
    // "DetectedSignalStrength 70 % of 0..100: WarningSignalStrength 40 warning, ..."
    std::string theMeasurement() const {
        if (measurements().size() != 1) {
            return std::to_string(measurements().size()) + " measurements";
        }
        const tesk5::Measurement& one = measurements().front();
        std::string all = one.name.utf8() + " " + std::to_string(one.value) + " " +
                          one.unit.utf8() + " of " + std::to_string(one.lowest) + ".." +
                          std::to_string(one.highest) + ":";
        for (const tesk5::Limit& limit : one.limits) {
            all += " " + limit.name.utf8() + " " + std::to_string(limit.value) + " " +
                   severityName(limit.severity);
        }
        return all;
    }

    std::vector<std::string> theSurvey() const {
        std::vector<std::string> all;
        for (const tesk5::Survey& survey : surveys()) {
            for (const tesk5::Survey::Entry& entry : survey.entries) {
                all.push_back(entry.name.utf8() + " " + std::to_string(entry.value) +
                              (entry.measured ? " measured" : ""));
            }
        }
        return all;
    }
};

TEST_F(VerificationMeasures, TheStrengthAgainstBothThresholdsWhateverTheVerdict) {
    startRadio({{.ssid = "Lab", .signal = 70U}});
    EXPECT_EQ(verify("Lab", "40", "20"), TestResult::PASS());
    EXPECT_EQ(theMeasurement(), "DetectedSignalStrength 70 % of 0..100: WarningSignalStrength 40 "
                                "warning FailingSignalStrength 20 error");
}

TEST_F(VerificationMeasures, TheStrengthOfARunThatFails) {
    startRadio({{.ssid = "Lab", .signal = 15U}});
    EXPECT_EQ(verify("Lab", "40", "20"), TestResult::FAIL());
    ASSERT_EQ(measurements().size(), 1U);
    EXPECT_EQ(measurements().front().brokenLimit()->name, "FailingSignalStrength");
}

TEST_F(VerificationMeasures, AgainstNoThresholdThatIsSwitchedOff) {
    startRadio({{.ssid = "Lab", .signal = 70U}});
    EXPECT_EQ(verify("Lab", "0", "20"), TestResult::PASS());
    EXPECT_EQ(theMeasurement(),
              "DetectedSignalStrength 70 % of 0..100: FailingSignalStrength 20 error");
}

TEST_F(VerificationMeasures, NothingWhereThereIsNothingToRate) {
    startRadio({{.ssid = "Lab", .signal = 70U}});
    EXPECT_EQ(verify("Lab", "0", "0"), TestResult::BADPARAMS());
    EXPECT_EQ(verify("Elsewhere", "40", "20"), TestResult::FAIL());
    EXPECT_THAT(measurements(), IsEmpty());
}

TEST_F(VerificationMeasures, WhichNetworksWereVisibleAndWhichOneItWasAbout) {
    startRadio({{.ssid = "Office", .signal = 61U}, {.ssid = "Lab", .signal = 70U}});
    EXPECT_EQ(verify("lab", "40", "20"), TestResult::PASS());
    ASSERT_EQ(surveys().size(), 1U);
    EXPECT_EQ(surveys().front().name, "VISIBLE_NETWORKS");
    EXPECT_EQ(surveys().front().unit, "%");
    EXPECT_THAT(theSurvey(), ElementsAre("Office 61", "Lab 70 measured"));
}

TEST_F(VerificationMeasures, WhichNetworksWereVisibleWhenTheAccessPointWasNot) {
    startRadio({{.ssid = "Office", .signal = 61U}});
    EXPECT_EQ(verify("Lab", "40", "20"), TestResult::FAIL());
    EXPECT_THAT(theSurvey(), ElementsAre("Office 61"));
}

} // namespace
