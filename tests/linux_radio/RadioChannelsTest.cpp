// The channels that radios may use, from nl80211's answers.
#include <support/Netlink.h>

#include <CallError.h>
#include <RadioChannels.h>

#include <gmock/gmock.h>

#include <cerrno>
#include <map>

namespace {

using namespace test::netlink;
using nativewifi::RadioChannels;
using nativewifi::linux_radio::Attributes;
using nativewifi::linux_radio::CallError;
using nativewifi::linux_radio::Outcome;
using testing::IsEmpty;

Bytes channel(std::uint32_t frequency, bool disabled) {
    Parts parts = {u32(NL80211_FREQUENCY_ATTR_FREQ, frequency)};
    if (disabled) {
        parts.push_back(flag(NL80211_FREQUENCY_ATTR_DISABLED));
    }
    return nested(1, parts);
}

// One message of the list of radios.
Bytes radio(std::uint32_t index, const char* name, const Parts& channels) {
    return join({u32(NL80211_ATTR_WIPHY, index), text(NL80211_ATTR_WIPHY_NAME, name),
                 nested(NL80211_ATTR_WIPHY_BANDS,
                        {nested(0, {nested(NL80211_BAND_ATTR_FREQS, channels)})})});
}

class Answers final : public nativewifi::linux_radio::Transport {
public:
    Outcome request(std::uint8_t command, Attributes attributes,
                    const OnAnswer& onAnswer) override {
        EXPECT_EQ(command, NL80211_CMD_GET_REG);
        const auto rules = m_rules.find(Bytes(attributes.begin(), attributes.end()));
        if (rules == m_rules.end()) {
            return {.error = EINVAL};
        }
        onAnswer(rules->second);
        return {};
    }
    Outcome dump(std::uint8_t command, Attributes attributes, const OnAnswer& onAnswer) override {
        EXPECT_EQ(command, NL80211_CMD_GET_WIPHY);
        EXPECT_EQ(Bytes(attributes.begin(), attributes.end()), flag(NL80211_ATTR_SPLIT_WIPHY_DUMP));
        for (const Bytes& message : radios) {
            onAnswer(message);
        }
        return {.error = error};
    }
    void rules(std::uint32_t radio, const Bytes& answer) {
        m_rules[u32(NL80211_ATTR_WIPHY, radio)] = answer;
    }

    std::vector<Bytes> radios;
    int error = 0;

private:
    std::map<Bytes, Bytes> m_rules;
};

TEST(ChannelsOfRadios, AreThoseOfEachRadioFromAllItsMessages) {
    Answers answers;
    answers.radios = {radio(0, "phy0", {channel(2412, false), channel(5180, true)}),
                      radio(0, "phy0", {channel(5200, false), channel(5955, false)}),
                      radio(7, "phy7", {channel(2412, false)})};
    answers.rules(0, text(NL80211_ATTR_REG_ALPHA2, "00"));
    answers.rules(7, text(NL80211_ATTR_REG_ALPHA2, "DE"));
    const std::vector<RadioChannels> found = radioChannels(answers);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].radio, "phy0");
    EXPECT_EQ(found[0].country, "00");
    EXPECT_EQ(found[0].channels5Ghz, 2U);
    EXPECT_EQ(found[0].usable5Ghz, 1U);
    EXPECT_EQ(found[1].country, "DE");
    EXPECT_EQ(found[1].channels5Ghz, 0U);
}

TEST(ChannelsOfRadios, OfACountryThatIsNotSaidHaveNone) {
    Answers answers;
    answers.radios = {radio(0, "phy0", {}), radio(1, "phy1", {}), Bytes{1, 2, 3}};
    answers.rules(0, attribute(NL80211_ATTR_REG_ALPHA2, bytesOf("D")));
    for (const RadioChannels& each : radioChannels(answers)) {
        EXPECT_EQ(each.country, "") << each.radio;
    }
}

TEST(ChannelsOfRadios, AreNotReadWithoutAListOfRadios) {
    Answers answers;
    answers.error = ETIMEDOUT;
    EXPECT_THROW(radioChannels(answers), CallError);
    for (const RadioChannels& each : nativewifi::radioChannels()) { // this machine's
        EXPECT_LE(each.usable5Ghz, each.channels5Ghz);
    }
}

} // namespace
