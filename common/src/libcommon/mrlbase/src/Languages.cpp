#include <mrl/Languages.h>

#include <algorithm>
#include <iterator>

namespace mrl {

namespace {

constexpr std::string_view rightToLeftScripts[] = {"Adlm", "Arab", "Hebr", "Nkoo",
                                                   "Rohg", "Syrc", "Thaa"};
// Languages that are usually written in one of these scripts.
constexpr std::string_view rightToLeftLanguages[] = {
    "ar",  "arc", "ckb", "dv", "fa",  "he", "iw", "ks",
    "nqo", "prs", "ps",  "sd", "syr", "ug", "ur", "yi",
};

template <std::size_t N>
bool contains(const std::string_view (&all)[N], std::string_view one) {
    return std::find(std::begin(all), std::end(all), one) != std::end(all);
}

} // namespace

bool isRightToLeft(std::string_view tag) {
    constexpr std::size_t SCRIPT_LENGTH = 4;
    const std::size_t first = tag.find('-');
    if (first != std::string_view::npos) {
        const std::string_view rest = tag.substr(first + 1);
        const std::string_view second = rest.substr(0, rest.find('-'));
        // A variant of four characters begins with a digit: "de-1901".
        if (second.size() == SCRIPT_LENGTH && second.front() > '9') {
            return contains(rightToLeftScripts, second);
        }
    }
    return contains(rightToLeftLanguages, tag.substr(0, first));
}

} // namespace mrl
