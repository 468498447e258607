// Numbers with a sign and a stated count of decimals.
#pragma once

#include <algorithm>
#include <compare>
#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tesk5 {

/// A decimal number, kept exactly, with the count of decimals that it is shown with: -57.5 has one,
/// -57.50 two. The two are equal. Pure; any thread.
class Number {
public:
    static constexpr int MOST_DECIMALS = 6;
    /// Greater numbers, with either sign, count as this one.
    static constexpr std::int64_t GREATEST = 1'000'000'000'000;

    constexpr Number() = default;
    /// A whole number: of no decimals.
    template <std::integral Whole>
    constexpr Number(Whole whole)
        : m_millionths(std::clamp(static_cast<std::int64_t>(whole), -GREATEST, GREATEST) *
                       MILLION) {}

    /// `number` rounded to `decimals` (0 to MOST_DECIMALS), halves away from zero.
    /// Failure: throws TeskException for what is no number (NaN)
    static Number rounded(double number, int decimals);
    /// The number that `text` spells: an optional sign, digits, and an optional decimal point with
    /// 1 to MOST_DECIMALS digits behind it; nothing for any other text, and for a number beyond
    /// GREATEST. U+2212, which texts copied from documents have, counts as a minus sign.
    static std::optional<Number> parse(std::string_view text);

    double toDouble() const;
    int decimals() const { return m_decimals; }
    /// In ASCII, as programs and the command line write it: "-57.5".
    std::string text() const;
    Number negated() const { return Number(-m_millionths, m_decimals); }

    friend constexpr bool operator==(const Number& a, const Number& b) {
        return a.m_millionths == b.m_millionths;
    }
    friend constexpr std::weak_ordering operator<=>(const Number& a, const Number& b) {
        return a.m_millionths <=> b.m_millionths;
    }

private:
    static constexpr std::int64_t MILLION = 1'000'000;

    constexpr Number(std::int64_t millionths, int decimals)
        : m_millionths(millionths), m_decimals(decimals) {}

    std::int64_t m_millionths = 0;
    int m_decimals = 0;
};

} // namespace tesk5
