#include "texts/NumberText.h"

#include <tesk5/Texts.h>

#include <algorithm>
#include <cstdio>

namespace tesk5 {

namespace {

// With at least two digits.
std::string twoDigits(long long number) {
    std::string text = std::to_string(number);
    return text.size() < 2 ? "0" + text : text;
}

// A number in ASCII as the language writes it.
std::string decimalText(const std::string& number) {
    if (number.front() == '-') {
        return message("NUMBER_NEGATIVE", {{"Number", decimalText(number.substr(1))}});
    }
    const std::size_t point = number.find('.');
    return point == std::string::npos
               ? number
               : message("NUMBER_DECIMAL", {{"Whole", number.substr(0, point)},
                                            {"Fraction", number.substr(point + 1)}});
}

std::string inSeconds(const std::string& number) {
    return message("NUMBER_SECONDS", {{"Number", number}});
}

} // namespace

std::string fixedPoint(double number, int digits) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.*f", digits, number);
    return buffer;
}

std::string countText(std::size_t count) {
    constexpr std::size_t UNGROUPED = 4;
    constexpr std::size_t GROUP = 3;
    std::string digits = std::to_string(count);
    if (digits.size() <= UNGROUPED) {
        return digits;
    }
    const std::size_t first = (digits.size() - 1) % GROUP + 1;
    std::string text = digits.substr(0, first);
    for (std::size_t place = first; place < digits.size(); place += GROUP) {
        text =
            message("NUMBER_GROUPS", {{"Higher", text}, {"Lowest", digits.substr(place, GROUP)}});
    }
    return text;
}

std::string numberText(const Number& number) {
    return decimalText(number.text());
}

std::string withUnit(const Number& value, const TeskString& unit) {
    const std::string number = numberText(value);
    return unit.empty() ? number
                        : message(unit == "%" ? "NUMBER_PERCENT" : "NUMBER_WITH_UNIT",
                                  {{"Number", number}, {"Unit", unit}});
}

std::string secondsText(double seconds) {
    return inSeconds(decimalText(fixedPoint(seconds, 1)));
}

std::string secondsText(const Number& seconds) {
    return inSeconds(numberText(seconds));
}

std::string wholeSecondsText(double seconds) {
    return inSeconds(std::to_string(static_cast<long>(std::max(seconds, 0.0))));
}

std::string localTimeText(mrl::Clock::UtcTime time) {
    using namespace std::chrono;
    const minutes offset = mrl::Clock::current().utcOffset(time);
    const auto local = floor<seconds>(time + offset);
    const auto day = floor<days>(local);
    const year_month_day date(day);
    const hh_mm_ss clock(local - day);
    const hh_mm_ss distance(abs(offset));
    return message(
        "TIME_LOCAL",
        {{"Year", std::to_string(static_cast<int>(date.year()))},
         {"Month", twoDigits(static_cast<unsigned>(date.month()))},
         {"Day", twoDigits(static_cast<unsigned>(date.day()))},
         {"Time", twoDigits(clock.hours().count()) + ":" + twoDigits(clock.minutes().count()) +
                      ":" + twoDigits(clock.seconds().count())},
         {"Offset", (offset < minutes(0) ? "-" : "+") + twoDigits(distance.hours().count()) + ":" +
                        twoDigits(distance.minutes().count())}});
}

} // namespace tesk5
