#include "Reports.h"

#include <run/PcIdentity.h>
#include <run/Smbios.h>
#ifndef _WIN32
#include <run/PcIdentityPosix.h>
#endif

namespace {

using tesk5::identityText;
using tesk5::PcIdentity;
using tesk5::TestResult;
using test::HasSubstr;
using test::Reports;
using testing::ElementsAre;
using testing::Pair;

using Facts = std::vector<std::pair<std::string, std::string>>;

// An SMBIOS structure: its formatted area behind the handle, then its strings.
std::string structure(char type, const std::string& formatted,
                      const std::vector<std::string>& strings) {
    std::string bytes = {type, static_cast<char>(4 + formatted.size()), 1, 0};
    bytes += formatted;
    for (const std::string& text : strings) {
        bytes += text + '\0';
    }
    return bytes + (strings.empty() ? std::string(2, '\0') : std::string(1, '\0'));
}

Facts factsOf(const std::string& structures) {
    PcIdentity pc;
    tesk5::setFromFirmware(structures, pc);
    return pc.facts();
}

const std::string FIRMWARE = structure(0, "\x01\x02", {"Vendor", "1.0"});
const std::string SYSTEM =
    structure(1, "\x01\x02\x03\x04", {"Maker", " Model X ", "Version", "S-1\xFC"});

TEST(Firmware, NamesMakerModelAndSerial) {
    EXPECT_THAT(
        factsOf(FIRMWARE + structure(2, "", {}) + SYSTEM + structure(127, "", {})),
        ElementsAre(Pair("maker", "Maker"), Pair("model", "Model X"), Pair("serial", "S-1ü")));
    EXPECT_THAT(factsOf(structure(1, std::string("\x00\x01\x00\x09", 4), {"Only"})),
                ElementsAre(Pair("model", "Only")))
        << "string 0 is none, and string 9 is not there";
    EXPECT_THAT(factsOf(structure(1, "\x01", {"Maker"})), ElementsAre(Pair("maker", "Maker")))
        << "a short structure of an old firmware";
    EXPECT_THAT(factsOf(structure(1, "\x01", {"Maker"}) + SYSTEM),
                ElementsAre(Pair("maker", "Maker")))
        << "the first one counts";
}

TEST(Firmware, ThatIsDamagedNamesNothing) {
    const std::string whole = FIRMWARE + SYSTEM;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_THAT(factsOf(whole.substr(0, size)), testing::IsEmpty()) << size;
    }
    EXPECT_THAT(factsOf(std::string(100, '\0')), testing::IsEmpty());
    EXPECT_THAT(factsOf(std::string(100, '\xFF')), testing::IsEmpty());
    EXPECT_THAT(factsOf(FIRMWARE), testing::IsEmpty());
}

TEST(IdentityTexts, AreCutBetweenCharactersAndFreeOfBlanksAround) {
    EXPECT_EQ(identityText(std::string_view(" \tA B\r\n\0", 8)), "A B");
    EXPECT_EQ(identityText("é"), "é");
    EXPECT_EQ(identityText("\xE9"), "é") << "no UTF-8";
    EXPECT_EQ(identityText("   "), "");
    std::string umlauts = "x";
    for (int i = 0; i < 200; ++i) {
        umlauts += "ü";
    }
    EXPECT_EQ(identityText(umlauts), umlauts.substr(0, 199));
}

TEST(ThisPc, SaysAtLeastItsNameAndBuild) {
    const std::optional<PcIdentity> pc = tesk5::pcIdentity();
    ASSERT_TRUE(pc);
    EXPECT_NE(pc->name, "");
    EXPECT_NE(pc->build, "");
#ifndef _WIN32
    PcIdentity files;
    tesk5::setFromFiles("/", files);
    EXPECT_EQ(pc->system, files.system);
    EXPECT_EQ(pc->maker, files.maker);
#endif
}

#ifndef _WIN32
TEST_F(Reports, NameALinuxPcByItsFiles) {
    std::filesystem::create_directories(file("sys/class/dmi/id"));
    std::filesystem::create_directories(file("etc"));
    fileWith("sys/class/dmi/id/sys_vendor", "Maker\n");
    fileWith("sys/class/dmi/id/product_name", "Model \n");
    fileWith("etc/os-release", "NAME=\"Other\"\nPRETTY_NAME=\"A System 13 (x)\"\nVERSION_ID=13\n");
    PcIdentity pc;
    tesk5::setFromFiles(file(""), pc);
    EXPECT_THAT(pc.facts(), ElementsAre(Pair("maker", "Maker"), Pair("model", "Model"),
                                        Pair("system", "A System 13 (x)")));
    fileWith("etc/os-release", "PRETTY_NAME=Plain");
    fileWith("sys/class/dmi/id/product_serial", "S1\n");
    tesk5::setFromFiles(file(""), pc);
    EXPECT_EQ(pc.system, "Plain");
    EXPECT_EQ(pc.serial, "S1");
}

TEST_F(Reports, TakeTheNameOfALinuxSystemFromItsLineInEitherQuotationMarks) {
    std::filesystem::create_directories(file("etc"));
    const auto systemIn = [this](const std::string& text) {
        fileWith("etc/os-release", text);
        PcIdentity pc;
        tesk5::setFromFiles(file(""), pc);
        return pc.system;
    };
    EXPECT_EQ(systemIn("PRETTY_NAME='A B'\n"), "A B");
    EXPECT_EQ(systemIn("PRETTY_NAME=\"A B'\n"), "\"A B'");
    EXPECT_EQ(systemIn("PRETTY_NAME=\"\n"), "\"");
    EXPECT_EQ(systemIn("PRETTY_NAME=xAx\n"), "xAx");
    EXPECT_EQ(systemIn("PRETTY_NAME=\n"), "");
    EXPECT_EQ(systemIn("PRETTY_NAME\nPRETTY_NAMES=Other\nOTHER_NAME=No\nPRETTY_NAME=Yes\n"), "Yes");
    EXPECT_EQ(systemIn("PRETTY_NAME"), "");
}
#endif

TEST_F(Reports, NameThePcInEveryFormatUnlessItIsToBeLeftOut) {
    registerTest("A", TestResult::PASS());
    PcIdentity& pc = test::g_module.pc.emplace();
    pc.name = "BENCH-3";
    pc.serial = "<S&\x1b>";
    startWithEvents();
    const test::ordered_json expected = {{"name", "BENCH-3"}, {"serial", "<S&\x1b>"}};
    EXPECT_EQ(json().at("pc"), expected);
    EXPECT_EQ(events()[0].at("pc"), expected);
    EXPECT_THAT(junit(), HasSubstr("<property name=\"pc.name\" value=\"BENCH-3\"/>\n      "
                                   "<property name=\"pc.serial\" value=\"&lt;S&amp;\\x1B&gt;\"/>"));
    EXPECT_THAT(html(), HasSubstr("<bdi>Serial number</bdi></th>"
                                  "<td><bdi>&lt;S&amp;\\x1B&gt;</bdi></td>"));
    startWithReports({"--no-identity"});
    EXPECT_FALSE(json().contains("pc"));
    EXPECT_THAT(junit(), testing::Not(HasSubstr("\"pc.")));
    EXPECT_THAT(html(), testing::Not(HasSubstr("BENCH-3")));
    startWithReports({"--config", fileWith("c.toml", "[outputs]\nno-identity = true\n")});
    EXPECT_FALSE(json().contains("pc"));
}

} // namespace
