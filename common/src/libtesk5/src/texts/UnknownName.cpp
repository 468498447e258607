#include "texts/UnknownName.h"

#include <tesk5/Texts.h>

#include "texts/Lists.h"

#include <mrl/Unicode.h>

#include <algorithm>
#include <numeric>

namespace tesk5 {

namespace {

// Number of units to insert, drop or replace to make one text of the other.
std::size_t distance(mrl::CharView a, mrl::CharView b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

} // namespace

std::string nearestName(std::string_view text, const std::vector<std::string>& names) {
    const mrl::CharString wanted = mrl::foldedCase(mrl::toUtf16(text));
    const auto rank = [&wanted](const std::string& name) {
        const mrl::CharString candidate = mrl::foldedCase(mrl::toUtf16(name));
        const bool contained = !wanted.empty() && candidate.find(wanted) != mrl::CharString::npos;
        return std::pair(!contained, distance(wanted, candidate));
    };
    const auto nearest =
        std::min_element(names.begin(), names.end(),
                         [&rank](const auto& a, const auto& b) { return rank(a) < rank(b); });
    if (nearest == names.end()) {
        return {};
    }
    // A name that shares little with the text would only mislead.
    const auto [notContained, edits] = rank(*nearest);
    const bool alike = !wanted.empty() && (!notContained || edits * 2 <= nearest->size());
    return alike ? *nearest : std::string();
}

std::string aboutUnknown(const UnknownName& unknown, const std::string& name,
                         const std::vector<std::string>& known, Event::Variables variables) {
    const std::string nearest = nearestName(name, known);
    variables.emplace_back("Name", name);
    variables.emplace_back("Nearest", nearest);
    variables.emplace_back("Known", listInQuotes(known));
    return message(nearest.empty() ? unknown.key : unknown.keyWithNearest, variables);
}

} // namespace tesk5
