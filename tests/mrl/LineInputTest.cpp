#include <mrl/LineInput.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

using mrl::ArrivingLines;

namespace {

bool goesOn() {
    return false;
}

// Every line of an input that arrives in these pieces.
std::vector<std::string> linesOf(std::deque<std::string> pieces) {
    ArrivingLines input([&pieces]() -> std::optional<std::string> {
        if (pieces.empty()) {
            return std::nullopt;
        }
        std::string piece = std::move(pieces.front());
        pieces.pop_front();
        return piece;
    });
    std::vector<std::string> lines;
    while (const std::optional<std::string> line = input.line(goesOn)) {
        lines.push_back(*line);
    }
    EXPECT_EQ(input.line(goesOn), std::nullopt) << "an input ends once";
    return lines;
}

using Lines = std::vector<std::string>;

} // namespace

TEST(LineInput, ArrivesInPieces) {
    EXPECT_EQ(linesOf({}), Lines());
    EXPECT_EQ(linesOf({"one\ntwo\n"}), Lines({"one", "two"}));
    EXPECT_EQ(linesOf({"o", "", "ne\nt", "wo", "\n"}), Lines({"one", "two"}));
    EXPECT_EQ(linesOf({"\n\n"}), Lines({"", ""}));
}

TEST(LineInput, HasALastLineWithoutAnEnd) {
    EXPECT_EQ(linesOf({"one\ntwo"}), Lines({"one", "two"}));
}

TEST(LineInput, KnowsTheLineEndsOfBothSystems) {
    EXPECT_EQ(linesOf({"one\r", "\ntwo\r\n", "three\r"}), Lines({"one", "two", "three"}));
    EXPECT_EQ(linesOf({"a\rb\n"}), Lines({"a\rb"}));
}

TEST(LineInput, CutsALineThatDoesNotEnd) {
    const std::string longest(ArrivingLines::LONGEST, 'x');
    EXPECT_EQ(linesOf({longest + "\nnext\n"}), Lines({longest, "next"}));
    EXPECT_EQ(linesOf({longest + "rest\n"}), Lines({longest, "rest"}));
    EXPECT_EQ(linesOf({longest + longest + "\n"}), Lines({longest, longest}));

    std::size_t arrived = 0;
    ArrivingLines endless([&arrived] {
        arrived += 1024;
        return std::string(1024, 'x');
    });
    EXPECT_EQ(endless.line(goesOn), longest);
    EXPECT_EQ(arrived, ArrivingLines::LONGEST);
}

TEST(LineInput, EndsItsWaitWhenAskedTo) {
    int moments = 0;
    ArrivingLines silent([&moments] {
        ++moments;
        return std::string();
    });
    EXPECT_EQ(silent.line([&moments] { return moments == 3; }), std::nullopt);
    EXPECT_EQ(moments, 3);
}

TEST(LineInput, GivesNothingOnceStopped) {
    ArrivingLines input([] { return std::string("one\n"); });
    EXPECT_EQ(input.line([] { return true; }), std::nullopt);
    EXPECT_EQ(input.line(goesOn), "one") << "what arrives later is not lost";
}
