#include "Reports.h"

#include <tesk5/RunIdentityJson.h>

#include <set>

namespace {

using tesk5::InForce;
using tesk5::isRunIdentifier;
using tesk5::newRunIdentifier;
using tesk5::RunIdentity;
using tesk5::TestResult;
using test::Reports;
using Milliseconds = std::chrono::milliseconds;

mrl::Clock::UtcTime millisecondsAfter1970(std::int64_t count) {
    return mrl::Clock::UtcTime() + Milliseconds(count);
}

TEST(RunIdentifier, BeginsWithItsMillisecondAndIsAUuidOfVersion7) {
    const std::string identifier = newRunIdentifier(millisecondsAfter1970(0x017F22E279B0));
    EXPECT_THAT(identifier, testing::StartsWith("017f22e2-79b0-7"));
    EXPECT_TRUE(isRunIdentifier(identifier)) << identifier;
}

TEST(RunIdentifier, IsAnotherOneForEachRunOfAMillisecond) {
    constexpr std::size_t RUNS = 1000;
    std::set<std::string> identifiers;
    for (std::size_t i = 0; i < RUNS; ++i) {
        const std::string identifier = newRunIdentifier(millisecondsAfter1970(1));
        EXPECT_TRUE(isRunIdentifier(identifier)) << identifier;
        identifiers.insert(identifier);
    }
    EXPECT_EQ(identifiers.size(), RUNS);
}

TEST(RunIdentifier, IsNoOtherText) {
    EXPECT_TRUE(isRunIdentifier("017f22e2-79b0-7cc3-98c4-dc0c0c07398f")) << "of RFC 9562";
    for (const char* other :
         {"", "017f22e2-79b0-4cc3-98c4-dc0c0c07398f", "017f22e2-79b0-7cc3-c8c4-dc0c0c07398f",
          "017F22E2-79B0-7CC3-98C4-DC0C0C07398F", "017f22e2-79b0-7cc3-98c4-dc0c0c07398",
          "017f22e2-79b0-7cc3-98c4-dc0c0c07398ff", "017f22e279b07cc398c4dc0c0c07398f",
          "g17f22e2-79b0-7cc3-98c4-dc0c0c07398f"}) {
        EXPECT_FALSE(isRunIdentifier(other)) << other;
    }
}

TEST(RunIdentityInJson, HasOnlyWhatIsKnownAndIsReadBack) {
    RunIdentity identity;
    identity.identifier = "017f22e2-79b0-7cc3-98c4-dc0c0c07398f";
    EXPECT_EQ(identityJson(identity).dump(),
              R"({"runIdentifier":"017f22e2-79b0-7cc3-98c4-dc0c0c07398f"})");
    identity.tags = {{.name = "serial", .value = "A1"}, {.name = "a", .value = "é"}};
    identity.pc.emplace().model = "X1";
    identity.pc->build = "26100.1";
    identity.adapters = {
        {.device = "D", .driver = "iwlwifi", .version = "", .address = "02:00:5e:00:53:01"}};
    identity.limits = {
        {.name = "Lab", .version = "2", .sha256 = "12", .source = InForce::Source::file},
        {.name = "Test", .version = "", .sha256 = "34", .source = InForce::Source::standard}};
    identity.calibration = {
        .name = "Bench", .version = "", .sha256 = "56", .source = InForce::Source::commandLine};
    const mrl::Json json = identityJson(identity);
    EXPECT_EQ(json.dump(),
              R"({"runIdentifier":"017f22e2-79b0-7cc3-98c4-dc0c0c07398f",)"
              R"("tags":{"serial":"A1","a":"é"},"pc":{"model":"X1","build":"26100.1"},)"
              R"("adapters":[{"device":"D","driver":"iwlwifi","address":"02:00:5e:00:53:01"}],)"
              R"("limits":[{"name":"Lab","version":"2","sha256":"12","source":"file"},)"
              R"({"name":"Test","sha256":"34","source":"default"}],)"
              R"("calibration":{"name":"Bench","sha256":"56","source":"commandLine"}})");
    EXPECT_EQ(identityJson(tesk5::identityOf(json)), json);
    EXPECT_EQ(*identity.tag("a"), "é");
    EXPECT_EQ(identity.tag("A"), nullptr) << "letter case counts";
}

TEST_F(Reports, NameTheRunByOneIdentifierEverywhere) {
    registerTest("A", TestResult::PASS());
    startWithEvents();
    const std::string identifier = json().at("runIdentifier");
    EXPECT_TRUE(isRunIdentifier(identifier)) << identifier;
    for (const auto& line : events()) {
        EXPECT_EQ(line.at("runIdentifier"), identifier);
    }
    startWithEvents();
    EXPECT_NE(json().at("runIdentifier"), identifier) << "another run";
}

} // namespace
