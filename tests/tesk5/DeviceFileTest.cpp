#include "FrameworkTest.h"

#include <devices/DeviceFile.h>

#include <support/DeepJson.h>

namespace test {

namespace {

using testing::Pair;

struct DeviceFiles : FrameworkTest {
    tesk5::DeviceList read(const std::string& text) {
        return tesk5::devicesFromFile(fileWith("d.json", text));
    }
    static std::string refusalOf(const std::string& path) {
        try {
            tesk5::devicesFromFile(path);
        } catch (const tesk5::BadInput& input) {
            return input.line;
        }
        return "accepted";
    }
    std::string refusal(const std::string& text) { return refusalOf(fileWith("d.json", text)); }
};

TEST_F(DeviceFiles, DescribeDevicesInTheirOrder) {
    const auto list = read(R"([
        {"name": "Kärte", "capabilities": ["NetworkCard", "Wireless"],
         "properties": {"z": "1", "a": "", "m": "\u00e4"}},
        {"name": "", "capabilities": []}])");
    ASSERT_EQ(list.devices.size(), 2U);
    EXPECT_EQ(list.devices[0].name(), "Kärte");
    EXPECT_THAT(list.devices[0].capability().names(), ElementsAre("Wireless", "NetworkCard"));
    EXPECT_THAT(list.devices[0].properties(),
                ElementsAre(Pair("z", "1"), Pair("a", ""), Pair("m", "ä")));
    EXPECT_THAT(list.devices[1].capability().names(), testing::IsEmpty());
    EXPECT_FALSE(list.failure);
    EXPECT_TRUE(read("[]").devices.empty());
    EXPECT_TRUE(read("\xEF\xBB\xBF[]").devices.empty()) << "with a byte order mark";
}

TEST_F(DeviceFiles, AreRefusedWithFilePlaceReasonAndRemedy) {
    EXPECT_EQ(refusal(R"([{"name": "Card", "capabilities": ["Wirless"]}])"),
              "the device file \"" + file("d.json") +
                  "\" cannot be used: $[0].capabilities[0]: \"Wirless\" is not a capability; use "
                  "\"Wireless\" or \"NetworkCard\"; mend it, or leave out --devices to use this "
                  "PC's devices");
}

TEST_F(DeviceFiles, AreRefusedForEveryMistakeWithItsPlace) {
    const std::vector<std::pair<std::string, const char*>> mistakes = {
        {deepBrackets(), "line 1"},
        {"", "line 1, column 1: "},
        {"[\n  oops]", "line 2, column 3: "},
        {R"([{"name": "a\xff"}])", "line 1, column "},
        {"[{\"name\": \"\xff\"}]", "line 1, column "},
        {R"(["\ud800"])", "line 1, column "},
        {"{}", "$ must be a list of devices"},
        {"[1]", "$[0] must be an object"},
        {R"([{"capabilities": []}])", "$[0] has no member \"name\""},
        {R"([{"name": "a"}])", "$[0] has no member \"capabilities\""},
        {R"([{"name": 1, "capabilities": []}])", "$[0].name must be a text, not number"},
        {R"([{"name": "a", "capabilities": "Wireless"}])", "$[0].capabilities must be a list"},
        {R"([{"name": "a", "capabilities": [null]}])",
         "$[0].capabilities[0] must be a text, not null"},
        {R"([{"name": "a", "capabilities": [], "properties": []}])",
         "$[0].properties must be an object"},
        {R"([{"name": "a", "capabilities": [], "properties": {"x": true}}])",
         "$[0].properties.x must be a text, not boolean"},
        {R"([{"name": "a", "capabilities": [], "property": {}}])",
         "$[0] has the unknown member \"property\""},
        {R"([{"name": "a", "name": "b", "capabilities": []}])",
         "the member \"name\" is there twice"},
        {R"([{"name": "a", "capabilities": []}] x)", "line 1, column "},
    };
    for (const auto& [text, expected] : mistakes) {
        EXPECT_THAT(refusal(text), HasSubstr(std::string("cannot be used: ") + expected)) << text;
    }
    EXPECT_THAT(refusalOf(file("")), HasSubstr("cannot be used: it is a directory"));
}

} // namespace

} // namespace test
