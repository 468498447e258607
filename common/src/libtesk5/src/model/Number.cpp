#include <tesk5/Number.h>

#include <tesk5/TeskException.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>

namespace tesk5 {

namespace {

constexpr std::string_view MINUS_SIGN = "\xE2\x88\x92"; // U+2212
constexpr std::array<std::int64_t, Number::MOST_DECIMALS + 1> POWERS = {
    1, 10, 100, 1000, 10'000, 100'000, 1'000'000};

std::int64_t powerOfTen(int decimals) {
    return POWERS[static_cast<std::size_t>(std::clamp(decimals, 0, Number::MOST_DECIMALS))];
}

// The number of digits alone; nothing for any other text, the empty one included.
std::optional<std::int64_t> digitsOf(std::string_view text) {
    const bool digits = !text.empty() && std::all_of(text.begin(), text.end(), [](char letter) {
        return letter >= '0' && letter <= '9';
    });
    std::int64_t number = 0;
    const auto parsed = std::from_chars(text.data(), text.data() + text.size(), number);
    return digits && parsed.ec == std::errc() ? std::optional(number) : std::nullopt;
}

bool takenFrom(std::string_view& text, std::string_view prefix) {
    if (!text.starts_with(prefix)) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

} // namespace

Number Number::rounded(double number, int decimals) {
    if (std::isnan(number)) {
        throw TeskException(TeskString("a value is not a number"));
    }
    decimals = std::clamp(decimals, 0, MOST_DECIMALS);
    const auto most = static_cast<double>(GREATEST);
    const std::int64_t power = powerOfTen(decimals);
    const double scaled = std::clamp(number, -most, most) * static_cast<double>(power);
    return Number(std::llround(scaled) * (MILLION / power), decimals);
}

std::optional<Number> Number::parse(std::string_view text) {
    const bool negative = takenFrom(text, "-") || takenFrom(text, MINUS_SIGN);
    if (!negative) {
        takenFrom(text, "+");
    }
    const std::size_t point = std::min(text.find('.'), text.size());
    const std::optional<std::int64_t> whole = digitsOf(text.substr(0, point));
    std::int64_t millionths = 0;
    std::size_t decimals = 0;
    if (point < text.size()) {
        const std::string_view fraction = text.substr(point + 1);
        const std::optional<std::int64_t> digits = digitsOf(fraction);
        decimals = fraction.size();
        if (!digits || decimals > MOST_DECIMALS) {
            return std::nullopt;
        }
        millionths = *digits * (MILLION / powerOfTen(static_cast<int>(decimals)));
    }
    if (!whole || *whole > GREATEST || (*whole == GREATEST && millionths > 0)) {
        return std::nullopt;
    }
    millionths += *whole * MILLION;
    return Number(negative ? -millionths : millionths, static_cast<int>(decimals));
}

double Number::toDouble() const {
    return static_cast<double>(m_millionths) / static_cast<double>(MILLION);
}

std::string Number::text() const {
    const std::int64_t magnitude = std::abs(m_millionths);
    std::string all = (m_millionths < 0 ? "-" : "") + std::to_string(magnitude / MILLION);
    if (m_decimals > 0) {
        // A leading digit keeps the zeros behind the point.
        const std::string fraction = std::to_string(MILLION + magnitude % MILLION);
        all += "." + fraction.substr(1, static_cast<std::size_t>(m_decimals));
    }
    return all;
}

} // namespace tesk5
