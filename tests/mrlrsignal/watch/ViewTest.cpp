// Frames as a person reads them.
#include "WatchTest.h"

#include <watch/BigDigits.h>
#include <watch/Chart.h>
#include <watch/Screen.h>
#include <watch/StyledLine.h>

namespace watch {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr Size USUAL{.columns = 80, .rows = 24};

// Ten readings a fifth of a second apart, the last one of -48 dBm.
Model watched(std::optional<readings::Target> target = readings::Target{.ssid = "Lab"}) {
    Model model("Adapter", std::move(target));
    for (int i = 0; i < 10; ++i) {
        model.take({reading(200ms * i, i == 3 ? -41 : -50)}, 200ms * i);
    }
    model.take({reading(2s, -48)}, 2s);
    model.setSource({.listed = true, .scans = 3, .scanEvery = 4s});
    return model;
}

TEST(WatchView, ShowsWhatIsKnownOfOneRadio) {
    Model model = watched();
    model.setReference(2s);
    model.setChains({-49, std::nullopt, -60});
    const std::string text = textOf(model, 2300ms);
    for (const char* const part :
         {" Lab  02:00:00:00:01:00  channel 36 (5\u00a0GHz)  Adapter", "-48\u00a0dBm  100%",
          "0.3\u00a0s ago, from a scan", "Best", "-41\u00a0dBm", "-50.0\u00a0dBm",
          "now +2.0\u00a0dB", "median -50.0\u00a0dBm, spread 0.0\u00a0dB",
          "1: -49\u00a0dBm   3: -60\u00a0dBm",
          "5.0 readings a second, not faster than a scan every 4\u00a0s; scans sent: 3",
          "-60\u00a0s", "q quit"}) {
        EXPECT_THAT(text, HasSubstr(part));
    }
}

TEST(WatchView, SaysThatTheConnectionNeedsNoScans) {
    Model model = watched();
    model.setSource({.listed = true});
    EXPECT_THAT(textOf(model, 2s), HasSubstr("from the connection, without scans; scans sent: 0"));
}

TEST(WatchView, SaysWhyThereIsNoLevel) {
    struct {
        SourceState source;
        const char* words;
    } const scenes[] = {
        {{.error = ERROR_NDIS_DOT11_POWER_STATE_INVALID}, "radio is off"},
        {{.error = ERROR_ACCESS_DENIED}, "denies access"},
        {{.error = ERROR_SERVICE_NOT_ACTIVE}, "does not answer"},
        {{.error = ERROR_GEN_FAILURE}, "error 31"},
        {{.scanError = ERROR_ACCESS_DENIED}, "denies scans"},
        {{.scanError = ERROR_GEN_FAILURE}, "error 31"},
        {{.listed = true}, "old entry"},
        {{}, "Not heard so far"},
    };
    for (const auto& [source, words] : scenes) {
        Model model("Adapter", readings::Target{.ssid = "Lab"});
        model.setSource(source);
        EXPECT_THAT(textOf(model, 5s), HasSubstr(words));
        EXPECT_THAT(textOf(model, 5s), StartsWith(" Lab  Adapter"));
    }
}

TEST(WatchView, SaysThatTheRadioIsNotHeardAnyMore) {
    const Model model = watched();
    EXPECT_THAT(textOf(model, 12s), Not(HasSubstr("out of reach")));
    EXPECT_THAT(textOf(model, 13s), HasSubstr("No reading for more than 10 s"));
}

TEST(WatchView, LetsPartsFallAwayInTheOrderOfTheirWorth) {
    const Model model = watched();
    const auto shows = [&model](std::size_t columns, std::size_t rows, const char* part) {
        return textOf(model, 2s, {.columns = columns, .rows = rows}).find(part) !=
               std::string::npos;
    };
    EXPECT_TRUE(shows(80, 24, "██████  ██████")) << "large digits";
    EXPECT_FALSE(shows(60, 15, "██████  ██████  "));
    EXPECT_TRUE(shows(60, 15, "┤"));
    EXPECT_FALSE(shows(60, 8, "┤"));
    EXPECT_TRUE(shows(60, 8, "│░")) << "the bar with the best level";
    EXPECT_FALSE(shows(60, 6, "░"));
    EXPECT_TRUE(shows(60, 6, "median"));
    EXPECT_FALSE(shows(60, 4, "median"));
    EXPECT_TRUE(shows(60, 4, "Best"));
    EXPECT_FALSE(shows(60, 3, "Best"));
    EXPECT_TRUE(shows(60, 3, " Lab"));
    EXPECT_FALSE(shows(60, 2, " Lab"));
    EXPECT_TRUE(shows(60, 2, "q quit"));
    EXPECT_TRUE(shows(60, 1, "-48\u00a0dBm"));
    EXPECT_FALSE(shows(60, 1, "q quit"));
}

TEST(WatchView, FitsEverySize) {
    Model one = watched();
    one.setTone(true, "There is no tone, and this is a long explanation of the reason why.");
    Model all = watched(std::nullopt);
    for (const std::size_t columns :
         {0U, 1U, 2U, 3U, 5U, 8U, 13U, 20U, 40U, 60U, 72U, 73U, 80U, 130U}) {
        for (std::size_t rows = 0; rows < 30; ++rows) {
            const Size size{.columns = columns, .rows = rows};
            linesOf(one, 2s, size); // which checks them
            linesOf(one, 20s, size);
            linesOf(all, 2s, size);
        }
    }
}

TEST(WatchView, ShowsHostileNamesHarmless) {
    const std::string name = "\x1b[31m\xE2\x80\xAEx\n";
    Model model("Adapter", std::nullopt);
    model.take({reading(1s, -50, LAB, name)}, 1s);
    EXPECT_THAT(textOf(model, 1s), HasSubstr("\\x1B[31m\\u202Ex\\n"));
    model.watch({.bssid = LAB});
    model.take({reading(1s, -50, LAB, name)}, 1s);
    EXPECT_THAT(textOf(model, 1s), HasSubstr(" \\x1B[31m\\u202Ex\\n  02:00:00:00:01:00"));
}

TEST(WatchView, ListsAllNetworksWithTheMarkAndScrollsWithIt) {
    Model model("Adapter", std::nullopt);
    std::vector<readings::Reading> many;
    for (UCHAR i = 0; i < 40; ++i) {
        many.push_back(reading(1s, -40 - i, {2, 0, 0, 0, 1, i}, "Net" + std::to_string(i)));
    }
    many.push_back(
        reading(1s, -90, {2, 0, 0, 0, 8, 8}, "日本語の無線ネットワーク日本語の無線ネットワーク"));
    many.push_back(reading(1s, -95, {2, 0, 0, 0, 9, 9}, ""));
    model.take(many, 1s);
    std::vector<std::string> lines = linesOf(model, 1s, USUAL);
    EXPECT_THAT(lines[2], StartsWith(" > Net0 "));
    EXPECT_THAT(lines[2], HasSubstr("-40\u00a0dBm  100%"));
    EXPECT_THAT(lines[2], HasSubstr("02:00:00:00:01:00  36 (5\u00a0GHz)"));
    EXPECT_THAT(lines.back(), HasSubstr("Enter watch"));
    model.moveMark(1000, 1s);
    lines = linesOf(model, 1s, USUAL);
    EXPECT_THAT(lines[20], StartsWith(" > (hidden) "));
    EXPECT_THAT(lines[19], StartsWith("   日本語"));
    EXPECT_EQ(lines[19].find("-90"), lines[19].rfind("-90"));
}

TEST(WatchView, SaysThatItListensUntilANetworkIsHeard) {
    const Model model("Adapter", std::nullopt);
    EXPECT_THAT(textOf(model, 0s), HasSubstr("Listening"));
}

TEST(WatchView, HasEscapeSequencesOfColoursAloneAndOnlyWhereTheyAreWanted) {
    const std::vector<std::string> plain = frame(watched(), 2s, USUAL, false);
    const std::vector<std::string> coloured = frame(watched(), 2s, USUAL, true);
    ASSERT_EQ(plain.size(), coloured.size());
    EXPECT_NE(plain, coloured);
    for (std::size_t row = 0; row < plain.size(); ++row) {
        std::string bare;
        for (std::size_t i = 0; i < coloured[row].size(); ++i) {
            if (coloured[row][i] == '\x1b') {
                i = coloured[row].find('m', i);
                ASSERT_NE(i, std::string::npos);
            } else {
                bare += coloured[row][i];
            }
        }
        EXPECT_EQ(bare, plain[row]);
    }
}

TEST(StyledLines, AreCutWithAnEllipsisAlsoAtTheEndOfAPiece) {
    StyledLine line("abc");
    line.add("def", Style::STRONG);
    EXPECT_EQ(line.text(6, false), "abcdef");
    EXPECT_EQ(line.text(5, false), "abcd…");
    EXPECT_EQ(line.text(3, false), "ab…");
    EXPECT_EQ(line.text(5, true), "abc\x1b[1md…\x1b[0m");
    EXPECT_EQ(StyledLine("無線").text(3, false), "無…");
}

TEST(BigDigitsOfALevel, AreFiveRowsOfOneWidth) {
    const auto rows = bigDigits("-0123456789");
    for (const std::string& row : rows) {
        EXPECT_EQ(mrl::columnsOf(row), mrl::columnsOf(rows[0]));
    }
    EXPECT_EQ(bigDigits("1")[4], "██████  ");
}

TEST(Charts, HaveARangeOfTensThatHoldsAllLevelsAndTheReference) {
    const auto range = [](const std::vector<std::optional<double>>& levels,
                          std::optional<double> reference = std::nullopt) {
        const Range found = rangeOf(levels, reference);
        return std::pair(found.low, found.high);
    };
    EXPECT_EQ(range({}), std::pair(-100, -20));
    EXPECT_EQ(range({-55, std::nullopt, -71}), std::pair(-80, -50));
    EXPECT_EQ(range({-54}), std::pair(-60, -40));
    EXPECT_EQ(range({-56}), std::pair(-70, -50));
    EXPECT_EQ(range({-60}), std::pair(-70, -50));
    EXPECT_EQ(range({-54}, -83), std::pair(-90, -50));
}

TEST(Charts, DrawColumnsUpToTheirLevelsAndTheReferenceBetween) {
    std::vector<std::string> rows;
    for (const StyledLine& line :
         chart({-60, -50, std::nullopt, -40}, 3, {.low = -60, .high = -40}, -50)) {
        rows.push_back(line.text(40, false));
    }
    EXPECT_THAT(rows, ElementsAre(" -40 ┤   █", " -50 ┤─█─█", " -60 ┤▄█ █"));
}

TEST(Charts, NameTheEndsWhereThereIsNoRoomForEveryTen) {
    std::vector<std::string> rows;
    for (const StyledLine& line : chart({}, 3, {.low = -100, .high = -20}, std::nullopt)) {
        rows.push_back(line.text(40, false));
    }
    EXPECT_THAT(rows, ElementsAre(" -20 ┤", "     │", "-100 ┤"));
}

TEST(Screens, SendWhatHasChangedAlone) {
    Screen screen;
    const Size size{.columns = 10, .rows = 2};
    EXPECT_EQ(screen.changeTo({"one", "two"}, size), "\x1b[2J\x1b[1;1Hone\x1b[K\x1b[2;1Htwo\x1b[K");
    EXPECT_THAT(screen.changeTo({"one", "two"}, size), IsEmpty());
    EXPECT_EQ(screen.changeTo({"one", "three"}, size), "\x1b[2;1Hthree\x1b[K");
    EXPECT_EQ(screen.changeTo({"one"}, {.columns = 10, .rows = 1}), "\x1b[2J\x1b[1;1Hone\x1b[K");
}

} // namespace
} // namespace watch
