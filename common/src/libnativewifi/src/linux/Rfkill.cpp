#include "Rfkill.h"

#include "SystemFiles.h"

#include <nativewifi/LinuxFiles.h>

#include <fcntl.h>
#include <linux/rfkill.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <string_view>
#include <vector>

namespace nativewifi::linux_radio {

namespace {

// "rfkill3" is number 3.
std::optional<std::uint32_t> switchNumber(std::string_view name) {
    constexpr std::string_view PREFIX = "rfkill";
    if (!name.starts_with(PREFIX)) {
        return std::nullopt;
    }
    name.remove_prefix(PREFIX.size());
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    return error == std::errc() && end == name.data() + name.size() ? std::optional(number)
                                                                    : std::nullopt;
}

} // namespace

std::vector<Rfkill::Switch> Rfkill::switchesOf(const std::string& interface) const {
    std::vector<Switch> found;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(radioFolder(m_root, interface), error), end;
         !error && entry != end; entry.increment(error)) {
        if (const auto number = switchNumber(entry->path().filename().string())) {
            found.push_back({*number, entry->path()});
        }
    }
    return found;
}

// Nothing without switches, and when one of them has gone.
std::optional<Rfkill::State> Rfkill::stateOf(const std::vector<Switch>& switches) {
    std::optional<State> all;
    for (const Switch& each : switches) {
        const std::string soft = lineOf(each.folder / "soft");
        if (soft.empty()) {
            return std::nullopt;
        }
        State& state = all ? *all : all.emplace();
        state.soft = state.soft || soft == "1";
        state.hard = state.hard || lineOf(each.folder / "hard") == "1";
    }
    return all;
}

std::optional<Rfkill::State> Rfkill::state(const std::string& interface) const {
    // A radio keeps its switches, and listing its folder costs more than a list of networks.
    const std::lock_guard lock(m_mutex);
    std::vector<Switch>& known = m_known[interface];
    std::optional<State> state = stateOf(known);
    if (!state) {
        known = switchesOf(interface);
        state = stateOf(known);
    }
    return state;
}

int Rfkill::block(const std::string& interface, bool blocked) const {
    const std::vector<Switch> all = switchesOf(interface);
    if (all.empty()) {
        return EOPNOTSUPP;
    }
    const int device = open((m_root / "dev/rfkill").c_str(), O_WRONLY | O_CLOEXEC);
    if (device < 0) {
        return errno == ENOENT ? EOPNOTSUPP : errno;
    }
    int error = 0;
    for (const Switch& each : all) {
        rfkill_event event{};
        event.idx = each.number;
        event.type = RFKILL_TYPE_WLAN;
        event.op = RFKILL_OP_CHANGE;
        event.soft = blocked ? 1 : 0;
        if (write(device, &event, sizeof event) < 0) {
            error = errno;
        }
    }
    close(device);
    return error;
}

} // namespace nativewifi::linux_radio
