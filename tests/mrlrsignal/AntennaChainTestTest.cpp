// The verdicts on receive chains, which Linux alone tells.
#include <levels/AntennaChainTest.h>

#include "SignalTest.h"

#include <tesk5/DiagModule.h>
#include <tesk5/Registry.h>
#include <tesk5/RunContext.h>

namespace test {
namespace {

using radiosim::AccessPoint;
using radiosim::Bss;
using radiosim::Connection;
using tesk5::TestResult;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// dB above the combined level of -50 dBm.
using Chains = std::vector<std::optional<std::int32_t>>;

class AntennaChains : public SignalTest {
protected:
    static AccessPoint lab(Chains chains) {
        Bss radio = radioAt(-50);
        radio.chains = std::move(chains);
        return {.ssid = "Lab", .bss = {{radio}}};
    }

    TestResult connected(Chains chains, std::optional<std::uint32_t> antennas = {}) {
        startRadio({.interfaces = {{.connection = Connection{.ssid = "Lab"},
                                    .rssi = -50,
                                    .receiveAntennas = antennas,
                                    .accessPoints = {lab(std::move(chains))}}}});
        return measure();
    }
    TestResult unconnected(Chains chains) {
        startRadio({lab(std::move(chains))});
        return measure();
    }

    static std::vector<std::string> seriesNames(const tesk5::TestRecorder& recorder) {
        std::vector<std::string> names;
        for (const tesk5::Series& series : recorder.series()) {
            names.push_back(series.head.name.utf8());
        }
        return names;
    }

private:
    // With the defaults that the framework puts in force for it.
    static TestResult measure() {
        const tesk5::Test* const test =
            tesk5::RunContext::current().registry.findTest("AntennaChainTest");
        const tesk5::Test::OwnDefaults defaults(*test);
        return test->function()(device());
    }
};

TEST_F(AntennaChains, PassWhenTheyAreAlike) {
    EXPECT_EQ(connected({0, -3}), TestResult::PASS());
    EXPECT_THAT(raisedKeys(), IsEmpty());
    ASSERT_EQ(measurements().size(), 1U);
    const tesk5::Measurement& imbalance = measurements()[0];
    EXPECT_EQ(imbalance.value.text(), "3.0");
    EXPECT_EQ(imbalance.unit.utf8(), "dB");
    ASSERT_EQ(imbalance.figures.size(), 3U);
    EXPECT_EQ(imbalance.figures[0].name, "Chain1");
    EXPECT_EQ(imbalance.figures[0].value.text(), "-50.0");
    EXPECT_EQ(imbalance.figures[1].name, "Chain2");
    EXPECT_EQ(imbalance.figures[1].value.text(), "-53.0");
    EXPECT_EQ(imbalance.figures[2].value.text(), "16") << "readings";
}

TEST_F(AntennaChains, FailByTheirNumberWhenOneIsFarBelowTheStrongest) {
    EXPECT_EQ(connected({-16, 0, -30}), TestResult::FAIL());
    ASSERT_THAT(raisedKeys(), ElementsAre("CHAIN_TOO_WEAK", "CHAIN_TOO_WEAK"));
    EXPECT_THAT(raisedLines()[0], HasSubstr("Chain=1 Level=-66.0 Imbalance=16.0 Strongest=2"));
    EXPECT_THAT(raisedLines()[1], HasSubstr("Chain=3 Level=-80.0 Imbalance=30.0 Strongest=2"));
    EXPECT_NE(measurements()[0].brokenLimit(), nullptr);
}

TEST_F(AntennaChains, MayDifferByTheImbalanceThatIsAllowed) {
    EXPECT_EQ(connected({0, -15}), TestResult::PASS());
    give({{parameters::maxImbalance, "14.5"}});
    EXPECT_EQ(connected({0, -15}), TestResult::FAIL());
}

TEST_F(AntennaChains, FailWhenFewerThanWantedTellALevel) {
    give({{parameters::chains, "3"}});
    EXPECT_EQ(connected({0, std::nullopt, -2}), TestResult::FAIL());
    EXPECT_THAT(raisedKeys(), ElementsAre("CHAINS_SILENT"));
    EXPECT_THAT(raisedLines()[0], HasSubstr("Chains=3 Heard=2 Silent=\"2\""));
    EXPECT_EQ(connected({std::nullopt, 0}), TestResult::FAIL());
    EXPECT_THAT(raisedLines()[1], HasSubstr("Chains=3 Heard=1 Silent=\"1, 3\""));
    EXPECT_EQ(connected({0, -1, -2}), TestResult::PASS());
}

TEST_F(AntennaChains, NeedTwoToBeCompared) {
    EXPECT_EQ(connected({0}), TestResult::CANNOTRUN());
    EXPECT_THAT(raisedKeys(), ElementsAre("ONE_CHAIN_ONLY"));
    give({{parameters::chains, "1"}});
    EXPECT_EQ(connected({0}), TestResult::PASS());
}

TEST_F(AntennaChains, WithoutAnAntennaAreLeftOut) {
    give({{parameters::chains, "4"}});
    EXPECT_EQ(connected({0, -40, -3}, 0b101U), TestResult::PASS());
    EXPECT_THAT(raisedKeys(), IsEmpty());
    EXPECT_EQ(connected({0, -3, std::nullopt}, 0b110U), TestResult::FAIL());
    EXPECT_THAT(raisedLines()[0], HasSubstr("Chains=2 Heard=1 Silent=\"3\""));
}

TEST_F(AntennaChains, OfADriverThatTellsNoneOfAConnectionCannotBeTested) {
    EXPECT_EQ(connected({}), TestResult::CANNOTRUN());
    EXPECT_THAT(raisedKeys(), ElementsAre("NO_CHAINS_OF_CONNECTION"));
    EXPECT_LT(clock().now(), 2s) << "five readings are enough to know";
    EXPECT_THAT(measurements(), IsEmpty());
}

TEST_F(AntennaChains, OfADriverThatTellsNoneOfAScanNeedAConnection) {
    EXPECT_EQ(unconnected({}), TestResult::CANNOTRUN());
    EXPECT_THAT(raisedKeys(), ElementsAre("NO_CHAINS_OF_SCAN"));
}

TEST_F(AntennaChains, AreTakenFromScansWhereTheDriverTellsThem) {
    EXPECT_EQ(unconnected({0, -20}), TestResult::FAIL());
    EXPECT_THAT(raisedKeys(), ElementsAre("CHAIN_TOO_WEAK"));
}

TEST_F(AntennaChains, OfTheStrongerOfTwoRadiosCount) {
    AccessPoint twins = lab({0, -20});
    twins.bss->push_back(radioAt(-52, 1));
    twins.bss->back().chains = {0, -1};
    startRadio({twins});
    EXPECT_EQ(levels::AntennaChainTest(device()), TestResult::FAIL());
}

TEST_F(AntennaChains, CannotRunForTheReasonsOfALevel) {
    startRadio(std::vector<AccessPoint>{});
    EXPECT_EQ(levels::AntennaChainTest(device()), TestResult::CANNOTRUN());
    EXPECT_THAT(raisedKeys(), ElementsAre("NO_LEVEL_NOT_SEEN"));
}

TEST_F(AntennaChains, AreSeriesOfTheirOwnWithTheirMedian) {
    tesk5::TestRecorder recorder(nullptr);
    EXPECT_EQ(connected({0, std::nullopt, -3}), TestResult::PASS());
    ASSERT_THAT(seriesNames(recorder), ElementsAre("Chain1", "Chain3"));
    const tesk5::Series& third = recorder.series()[1];
    EXPECT_EQ(third.head.unit.utf8(), "dBm");
    EXPECT_EQ(third.head.median->text(), "-53.0");
    EXPECT_EQ(third.points.size(), 16U);
    EXPECT_EQ(third.points[0].attributes[0].second.valueString().utf8(), "connection");
}

} // namespace
} // namespace test
