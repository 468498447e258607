#include <watch/ListView.h>

#include <watch/Notices.h>
#include <watch/ViewTexts.h>

#include <mrl/DisplayWidth.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <cmath>

namespace watch {

namespace {

constexpr std::size_t MARK = 3;

StyledLine rowOf(const ListedRadio& radio, bool marked, std::size_t columns, Moment now) {
    const readings::Reading& last = *radio.track->last();
    // What a narrow terminal has no room for stands on the right and is cut.
    constexpr std::size_t LEVEL = 10;
    constexpr std::size_t PERCENT = 6;
    constexpr std::size_t AGE = 9;
    constexpr std::size_t ADDRESS = 19;
    constexpr std::size_t CHANNEL = 15;
    constexpr std::size_t REST = MARK + LEVEL + PERCENT + AGE + ADDRESS + CHANNEL;
    constexpr std::size_t LEAST_NAME = 8;
    constexpr std::size_t MOST_NAME = 34;
    const std::size_t name = std::clamp(columns - std::min(columns, REST), LEAST_NAME, MOST_NAME);
    const auto right = [](const std::string& number, std::size_t width) {
        return std::string(width - std::min(width, mrl::columnsOf(number)), ' ') + number;
    };
    const Style style = marked ? Style::STRONG : Style::PLAIN;
    StyledLine line(marked ? " > " : "   ", Style::STRONG);
    line.add(mrl::fittedToColumns(mrl::escapeControls(nameText(last)), name), style)
        .padTo(MARK + name)
        .add(right(numberText(radio.level, DBM, 0), LEVEL), style)
        .add(right(percentText(static_cast<LONG>(std::lround(radio.level))), PERCENT))
        .add(right(ageText(last, now), AGE), Style::FAINT)
        .add("  " + readings::bssidText(last.bssid))
        .add("  " + channelText(last.mhz));
    return line;
}

} // namespace

Lines listLines(const Model& model, Moment now, std::size_t columns, std::size_t rows) {
    const std::vector<ListedRadio> all = model.list(now);
    Lines frame;
    if (rows > 1) {
        frame.push_back(titleLine(model));
    }
    Lines below = noticeLines(model, now, columns);
    if (rows > 4) {
        double rate = 0;
        for (const ListedRadio& radio : all) {
            rate += radio.track->rate(now);
        }
        below.insert(below.begin(), paceLine(model, rate));
    }
    below.resize(std::min(below.size(), rows - std::min(rows, frame.size() + 1)));
    if (rows > 8) {
        frame.emplace_back();
        below.insert(below.begin(), StyledLine());
    }
    const std::size_t room = rows - std::min(rows, frame.size() + below.size());
    const auto marked = static_cast<std::size_t>(
        std::ranges::find_if(all,
                             [&](const auto& radio) { return radio.bssid == model.marked(); }) -
        all.begin());
    // The mark is in the middle, unless an end of the list is nearer.
    const std::size_t first =
        std::min(marked - std::min(marked, room / 2), all.size() - std::min(all.size(), room));
    for (std::size_t row = first; row < std::min(all.size(), first + room); ++row) {
        frame.push_back(rowOf(all[row], row == marked, columns, now));
    }
    frame.insert(frame.end(), below.begin(), below.end());
    return frame;
}

} // namespace watch
