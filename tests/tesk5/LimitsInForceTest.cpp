#include "Reports.h"

#include <mrl/Sha256.h>

namespace {

using tesk5::TestResult;
using test::DataType;
using test::HasSubstr;
using test::Reports;
using Json = test::ordered_json;

class LimitsInForce : public Reports {
protected:
    LimitsInForce() {
        for (const char* name : {"A", "B"}) {
            registerTest(name, TestResult::PASS())
                ->addParameter(parameter("Warning", DataType::UINT32()))
                ->addParameter(parameter("SSID"))
                ->addParameter(parameter("Failing", DataType::UINT32()))
                ->addParameter(parameter("Limits"))
                ->addParameter(parameter("Calibration"));
        }
    }

    static tesk5::Parameter* parameter(const char* name,
                                       const DataType& type = DataType::STRING()) {
        tesk5::Parameter* const known = registry().findParameter(name);
        return known != nullptr ? known : optionalParameter(name, type);
    }
    Json reportWith(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "A");
        EXPECT_EQ(startWithReports(std::move(arguments)), 0) << errors();
        return json();
    }
    std::string config(const std::string& parameters) const {
        return fileWith("station.toml", "[parameters]\n" + parameters);
    }
};

TEST_F(LimitsInForce, AreNamedByTheirTestAndTheDigestOfTheirValues) {
    EXPECT_EQ(reportWith({"--set", "Failing=20", "--set", "SSID=Lab"}).at("limits"),
              Json::array({{{"name", "A"},
                            {"sha256", mrl::sha256Of("Failing=20\n")},
                            {"source", "commandLine"}}}));
    EXPECT_EQ(reportWith({"--config", config("Failing = 20\nWarning = 40\n")}).at("limits"),
              Json::array({{{"name", "A"},
                            {"sha256", mrl::sha256Of("Warning=40\nFailing=20\n")},
                            {"source", "file"}}}));
    EXPECT_EQ(reportWith({"--config", config("Failing = 20\n"), "--set", "warning=40"})
                  .at("limits")[0]
                  .at("source"),
              "commandLine")
        << "one of them is enough, in any letter case";
    EXPECT_FALSE(reportWith({}).contains("limits"));
    EXPECT_FALSE(reportWith({"--set", "SSID=Lab"}).contains("limits"));
}

TEST_F(LimitsInForce, AreNamedByTheModuleWhereItNamesThem) {
    const std::string digest(64, 'a');
    reportWith({"--set", "Failing=20", "--set", "Limits=Lab 2 " + digest});
    EXPECT_EQ(
        json().at("limits"),
        Json::array(
            {{{"name", "Lab"}, {"version", "2"}, {"sha256", digest}, {"source", "commandLine"}}}));
    EXPECT_THAT(junit(), HasSubstr("<property name=\"limits.name\" value=\"Lab\"/>\n      "
                                   "<property name=\"limits.version\" value=\"2\"/>\n"));
    EXPECT_THAT(html(), HasSubstr("<bdi>Limits in force</bdi></th><td><bdi>Lab 2; SHA-256: " +
                                  digest + "; from the command line</bdi>"));
}

TEST_F(LimitsInForce, OfSeveralTestsAreAllNamed) {
    EXPECT_EQ(startWithReports({"A", "B", "--set", "Failing=20", "--events"}), 0);
    ASSERT_EQ(json().at("limits").size(), 2U);
    EXPECT_EQ(json().at("limits")[1].at("name"), "B");
    EXPECT_EQ(events()[0].at("limits"), json().at("limits"));
    EXPECT_THAT(junit(), HasSubstr("<property name=\"limits.2.name\" value=\"B\"/>"));
}

TEST_F(LimitsInForce, HaveACalibrationBesideThem) {
    EXPECT_EQ(reportWith({"--set", "Calibration=bench.toml"}).at("calibration"),
              Json({{"name", "bench.toml"}, {"sha256", "12"}, {"source", "commandLine"}}));
    EXPECT_THAT(junit(), HasSubstr("<property name=\"calibration.sha256\" value=\"12\"/>"));
    EXPECT_FALSE(reportWith({}).contains("calibration"));
}

} // namespace
