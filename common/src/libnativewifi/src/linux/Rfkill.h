// The switches of one radio: rfkill's state in sysfs, changed through rfkill's device.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace nativewifi::linux_radio {

/// Reads the state afresh with each question. Any thread.
class Rfkill {
public:
    /// \param root the folder that has sys and dev
    explicit Rfkill(std::filesystem::path root) : m_root(std::move(root)) {}

    struct State {
        bool soft = false; ///< blocked in software
        bool hard = false; ///< blocked by a button or by the firmware

        bool isOff() const { return soft || hard; }
        bool operator==(const State&) const = default;
    };
    /// Of the interface's radio; nothing when it has no switch.
    std::optional<State> state(const std::string& interface) const;

    /// Blocks or frees the interface's radio in software, and no other radio.
    /// \return errno; EOPNOTSUPP when it has no switch
    int block(const std::string& interface, bool blocked) const;

private:
    struct Switch {
        std::uint32_t number;
        std::filesystem::path folder;
    };
    std::vector<Switch> switchesOf(const std::string& interface) const;
    static std::optional<State> stateOf(const std::vector<Switch>& switches);

    const std::filesystem::path m_root;
    mutable std::mutex m_mutex;
    mutable std::map<std::string, std::vector<Switch>> m_known; ///< by interface
};

} // namespace nativewifi::linux_radio
