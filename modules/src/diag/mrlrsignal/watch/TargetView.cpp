#include <watch/TargetView.h>

#include <watch/BigDigits.h>
#include <watch/Chart.h>
#include <watch/Notices.h>
#include <watch/ViewTexts.h>

#include <tesk5/Number.h>
#include <tesk5/Texts.h>

#include <mrl/DisplayWidth.h>

#include <algorithm>
#include <cmath>

namespace watch {

namespace {

using tesk5::message;
using tesk5::Number;
using tesk5::quantity;

constexpr int DECIMALS = 1;

// What the bar shows, in dBm.
constexpr double BAR_LOW = -100;
constexpr double BAR_HIGH = -20;

// Smaller terminals have no large digits.
constexpr std::size_t COLUMNS_FOR_DIGITS = 72;
constexpr std::size_t ROWS_FOR_DIGITS = 10;
// Two digits with their sign and a gap; where the level has three, what is beside them moves.
constexpr std::size_t DIGITS_COLUMNS = 27;
constexpr std::size_t LEAST_CHART_ROWS = 3;
constexpr std::size_t MOST_CHART_ROWS = 30;

const char* wordOf(readings::Source source) {
    switch (source) {
    case readings::Source::LINK:
        return "WATCH_FROM_LINK";
    case readings::Source::CONNECTION:
        return "WATCH_FROM_CONNECTION";
    case readings::Source::SCAN:
        break;
    }
    return "WATCH_FROM_SCAN";
}

// With a sign also when it is positive.
std::string difference(double value) {
    const Number rounded = Number::rounded(value, DECIMALS);
    return (rounded > Number(0) ? "+" : "") + quantity(rounded, DECIBEL).shownString().utf8();
}

// A label and what it names.
struct Fact {
    std::string label;
    StyledLine value;
};

// The most important first.
std::vector<Fact> factsOf(const Model& model, const Track& track, Moment now) {
    std::vector<Fact> facts;
    const readings::Reading& last = *track.last();
    const auto level = static_cast<double>(last.dbm);
    StyledLine present(numberText(level, DBM, 0), Style::STRONG);
    present.add("  " + percentText(last.dbm) + "  ");
    const bool old = now - last.at > RECENT;
    present.add(message("WATCH_AGE", {{"Age", ageText(last, now)}}),
                old ? Style::PROBLEM : Style::PLAIN);
    present.add(", " + message(wordOf(last.source)));
    facts.push_back({message("WATCH_LEVEL"), std::move(present)});
    if (track.best()) {
        facts.push_back({message("WATCH_BEST"),
                         StyledLine(numberText(static_cast<double>(*track.best()), DBM, 0))});
    }
    const std::optional<Recent> recent = track.recent(now);
    if (model.reference()) {
        StyledLine value(numberText(*model.reference(), DBM), Style::REFERENCE);
        value.add(
            message("WATCH_DIFFERENCE", {{"Difference", difference(level - *model.reference())}}),
            Style::STRONG);
        facts.push_back({message("WATCH_REFERENCE"), std::move(value)});
    }
    if (recent) {
        facts.push_back(
            {message("WATCH_RECENT"),
             StyledLine(
                 message("WATCH_MEDIAN_AND_SPREAD",
                         {{"Median", quantity(Number::rounded(recent->median, DECIMALS), DBM)},
                          {"Spread", quantity(Number::rounded(recent->interquartileRange, DECIMALS),
                                              DECIBEL)},
                          {"Count", recent->readings}}))});
    }
    StyledLine chains;
    for (std::size_t chain = 0; chain < model.chains().size(); ++chain) {
        if (const std::optional<LONG> dbm = model.chains()[chain]) {
            chains.add(chains.columns() > 0 ? "   " : "")
                .add(std::to_string(chain + 1) + ": ", Style::FAINT)
                .add(numberText(static_cast<double>(*dbm), DBM, 0));
        }
    }
    if (chains.columns() > 0) {
        facts.push_back({message("WATCH_CHAINS"), std::move(chains)});
    }
    if (model.tone()) {
        facts.push_back({message("WATCH_TONE"), StyledLine(message("WATCH_TONE_ON"))});
    }
    return facts;
}

Lines linesOf(const std::vector<Fact>& facts) {
    std::size_t widest = 0;
    for (const Fact& fact : facts) {
        widest = std::max(widest, mrl::columnsOf(fact.label));
    }
    Lines lines;
    for (const Fact& fact : facts) {
        StyledLine line(" ");
        line.add(fact.label, Style::FAINT).padTo(widest + 3).add(fact.value);
        lines.push_back(std::move(line));
    }
    return lines;
}

// The facts behind the level in large digits.
Lines besideDigits(const Lines& facts, LONG dbm) {
    const auto digits = bigDigits(std::to_string(dbm));
    Lines lines;
    for (std::size_t row = 0; row < std::max(facts.size(), DIGIT_ROWS); ++row) {
        StyledLine line("  ");
        if (row < DIGIT_ROWS) {
            line.add(digits[row], Style::STRONG);
        }
        line.padTo(std::max(DIGITS_COLUMNS, mrl::columnsOf(digits.front()) + 3));
        if (row < facts.size()) {
            line.add(facts[row]);
        }
        lines.push_back(std::move(line));
    }
    return lines;
}

StyledLine barLine(const Track& track, std::size_t columns) {
    const std::string low = " " + std::to_string(static_cast<int>(BAR_LOW)) + " ";
    const std::string high = " " + std::to_string(static_cast<int>(BAR_HIGH));
    const std::size_t room = columns - std::min(columns, low.size() + high.size());
    const auto placeOf = [room](LONG dbm) {
        const double share = (static_cast<double>(dbm) - BAR_LOW) / (BAR_HIGH - BAR_LOW);
        return static_cast<std::size_t>(
            std::lround(std::clamp(share, 0.0, 1.0) * static_cast<double>(room)));
    };
    const std::size_t level = placeOf(track.last()->dbm);
    const std::size_t best = track.best() ? placeOf(*track.best()) : 0;
    std::string full;
    std::string rest;
    std::string behind;
    for (std::size_t place = 0; place < room; ++place) {
        (place < level                       ? full
         : place + 1 < best || best <= level ? rest
                                             : behind) += place < level ? "█" : "░";
    }
    StyledLine line(low, Style::FAINT);
    line.add(full, Style::TRACE).add(rest, Style::FAINT);
    if (best > level && !behind.empty()) {
        line.add("│", Style::STRONG).add(behind.substr(std::string_view("░").size()), Style::FAINT);
    }
    return line.add(high, Style::FAINT);
}

// Under the chart: how long ago.
StyledLine timeLine(std::size_t slots) {
    const std::string begin = "-" + numberText(secondsBetween(Moment::zero(), HISTORY), SECONDS, 0);
    const std::string middle =
        "-" + numberText(secondsBetween(Moment::zero(), HISTORY) / 2, SECONDS, 0);
    const std::string end = message("WATCH_NOW");
    StyledLine line;
    line.padTo(AXIS_COLUMNS).add(begin, Style::FAINT);
    line.padTo(AXIS_COLUMNS + (slots - std::min(slots, mrl::columnsOf(middle))) / 2);
    line.add(middle, Style::FAINT);
    line.padTo(AXIS_COLUMNS + slots - std::min(slots, mrl::columnsOf(end)));
    return line.add(end, Style::FAINT);
}

Lines chartLines(const Model& model, const Track& track, Moment now, std::size_t columns,
                 std::size_t rows) {
    const std::size_t slots = columns - AXIS_COLUMNS;
    const std::vector<std::optional<double>> levels = track.history(now, slots);
    Lines lines = chart(levels, rows - 1, rangeOf(levels, model.reference()), model.reference());
    lines.push_back(timeLine(slots));
    return lines;
}

} // namespace

Lines targetLines(const Model& model, Moment now, std::size_t columns, std::size_t rows) {
    const Lines notices = noticeLines(model, now, columns);
    const Track* const track = model.followed();
    Lines frame;
    if (rows > 1) {
        frame.push_back(titleLine(model));
    }
    if (track == nullptr) {
        append(frame, Lines(rows > 6 ? 1 : 0), rows);
        append(frame, notices, rows);
        return frame;
    }
    Lines levels = linesOf(factsOf(model, *track, now));
    if (columns >= COLUMNS_FOR_DIGITS && rows >= ROWS_FOR_DIGITS) {
        levels = besideDigits(levels, track->last()->dbm);
    }
    levels.push_back(paceLine(model, track->rate(now)));
    // A notice is worth more than all but the first fact.
    const std::size_t forNotices =
        std::min(notices.size(), rows - std::min(rows, frame.size() + 1));
    const std::size_t free = rows - std::min(rows, frame.size() + levels.size() + forNotices);
    const bool airy = free >= LEAST_CHART_ROWS + 6;
    const bool bar = free >= 1;
    const std::size_t taken = (bar ? 1 : 0) + (airy ? 3 : 0);
    const std::size_t chartRows = std::min(free - std::min(free, taken), MOST_CHART_ROWS);
    const Lines gap(airy ? 1 : 0);
    append(frame, gap, rows);
    append(frame, levels, rows - forNotices);
    append(frame, notices, rows);
    append(frame, gap, rows);
    if (bar) {
        frame.push_back(barLine(*track, columns));
    }
    append(frame, gap, rows);
    if (chartRows > LEAST_CHART_ROWS && columns > 2 * AXIS_COLUMNS) {
        append(frame, chartLines(model, *track, now, columns, chartRows), rows);
    }
    return frame;
}

} // namespace watch
