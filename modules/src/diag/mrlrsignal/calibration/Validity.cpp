#include <calibration/Validity.h>

#include <charconv>

namespace calibration {

namespace {

// A number of exactly `digits` digits at `at`.
std::optional<int> number(std::string_view text, std::size_t at, std::size_t digits) {
    const char* const begin = text.data() + at;
    const char* const end = begin + digits;
    if (*begin == '-') {
        return std::nullopt;
    }
    int value = 0;
    const auto [read, error] = std::from_chars(begin, end, value);
    return error == std::errc() && read == end ? std::optional(value) : std::nullopt;
}

} // namespace

Validity validity(std::chrono::sys_days date, int days, std::chrono::sys_days today) {
    if (today < date) {
        return Validity::NOT_YET;
    }
    return today < date + std::chrono::days(days) ? Validity::VALID : Validity::EXPIRED;
}

std::optional<std::chrono::sys_days> parseDay(std::string_view text) {
    if (text.size() != 10 || text[4] != '-' || text[7] != '-') {
        return std::nullopt;
    }
    const std::optional<int> year = number(text, 0, 4);
    const std::optional<int> month = number(text, 5, 2);
    const std::optional<int> day = number(text, 8, 2);
    if (!year || !month || !day) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date{std::chrono::year(*year),
                                           std::chrono::month(static_cast<unsigned>(*month)),
                                           std::chrono::day(static_cast<unsigned>(*day))};
    return date.ok() ? std::optional(std::chrono::sys_days(date)) : std::nullopt;
}

} // namespace calibration
