#include <levels/LimitsId.h>

#include <tesk5/Number.h>

#include <mrl/Sha256.h>

#include <algorithm>
#include <optional>

namespace levels {

namespace {

std::string line(const char* name, const std::optional<double>& value) {
    return std::string(name) + "=" +
           (value ? tesk5::Number::rounded(*value, 1).text() : std::string("none")) + "\n";
}

std::string idOf(const std::string& nameAndRevision, const statistics::LevelLimits& limits) {
    return nameAndRevision + " " +
           mrl::sha256Of(nameAndRevision + "\n" + line("WarningLevel", limits.warning) +
                         line("FailingLevel", limits.failing) +
                         line("GuardBand", limits.guardBand));
}

bool isNameCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
           c == '-' || c == '_';
}

} // namespace

std::string limitsId(const std::string& name, int revision, const statistics::LevelLimits& limits) {
    return idOf(name + " " + std::to_string(revision), limits);
}

bool isIdOf(std::string_view id, const statistics::LevelLimits& limits) {
    const std::size_t end = id.rfind(' ');
    return end != std::string_view::npos && idOf(std::string(id.substr(0, end)), limits) == id;
}

bool isLimitsName(std::string_view name) {
    constexpr std::size_t LONGEST = 40;
    return !name.empty() && name.size() <= LONGEST &&
           std::all_of(name.begin(), name.end(), &isNameCharacter);
}

} // namespace levels
