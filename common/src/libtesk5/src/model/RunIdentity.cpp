#include <tesk5/RunIdentity.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <random>

namespace tesk5 {

namespace {

using Fact = std::pair<const char*, std::string PcIdentity::*>;
constexpr Fact pcFacts[] = {
    {"name", &PcIdentity::name},     {"maker", &PcIdentity::maker},   {"model", &PcIdentity::model},
    {"serial", &PcIdentity::serial}, {"system", &PcIdentity::system}, {"build", &PcIdentity::build},
};

} // namespace

std::vector<std::pair<std::string, std::string>> PcIdentity::facts() const {
    std::vector<std::pair<std::string, std::string>> known;
    for (const auto& [fact, member] : pcFacts) {
        if (!(this->*member).empty()) {
            known.emplace_back(fact, this->*member);
        }
    }
    return known;
}

void PcIdentity::set(std::string_view fact, std::string value) {
    for (const auto& [known, member] : pcFacts) {
        if (fact == known) {
            this->*member = std::move(value);
            return;
        }
    }
}

const char* sourceName(InForce::Source source) {
    switch (source) {
    case InForce::Source::file:
        return "file";
    case InForce::Source::commandLine:
        return "commandLine";
    default:
        return "default";
    }
}

const std::string* RunIdentity::tag(std::string_view name) const {
    const auto found =
        std::find_if(tags.begin(), tags.end(), [name](const Tag& tag) { return tag.name == name; });
    return found == tags.end() ? nullptr : &found->value;
}

std::string newRunIdentifier(mrl::Clock::UtcTime time) {
    constexpr std::uint64_t VERSION = 7;
    constexpr std::uint64_t VARIANT = 2;
    constexpr int RANDOM_A_BITS = 12;
    constexpr int RANDOM_B_BITS = 62;
    const auto milliseconds = static_cast<std::uint64_t>(
        std::chrono::floor<std::chrono::milliseconds>(time).time_since_epoch().count());
    std::random_device random;
    const std::uint64_t low = random() | std::uint64_t{random()} << 32U;
    const std::uint64_t high =
        milliseconds << 16U | VERSION << RANDOM_A_BITS | (random() & ((1U << RANDOM_A_BITS) - 1));
    const std::uint64_t rest =
        VARIANT << RANDOM_B_BITS | (low & ((std::uint64_t{1} << RANDOM_B_BITS) - 1));
    std::array<char, 33> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx%016llx",
                  static_cast<unsigned long long>(high), static_cast<unsigned long long>(rest));
    std::string text = digits.data();
    for (const std::size_t dash : {8U, 13U, 18U, 23U}) {
        text.insert(dash, "-");
    }
    return text;
}

bool isRunIdentifier(std::string_view text) {
    constexpr std::string_view PATTERN = "xxxxxxxx-xxxx-7xxx-vxxx-xxxxxxxxxxxx";
    const auto fits = [](char letter, char wanted) {
        const bool digit = (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'f');
        switch (wanted) {
        case 'x':
            return digit;
        case 'v':
            return letter == '8' || letter == '9' || letter == 'a' || letter == 'b';
        default:
            return letter == wanted;
        }
    };
    return text.size() == PATTERN.size() &&
           std::equal(text.begin(), text.end(), PATTERN.begin(), fits);
}

} // namespace tesk5
