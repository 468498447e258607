// Which call goes wrong and how, and which plan has not come true yet.
#pragma once

#include <radiosim/Scenario.h>

#include <nativewifi/WlanTypes.h>

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace radiosim {

/// Why `fault` can never have an effect; empty when it can.
std::string faultMistake(const Fault& fault);

/// The faults in force. Any thread.
class FaultPlan {
public:
    /// What the matching faults do to one call.
    class Effects {
    public:
        Milliseconds delay() const { return m_delay; }
        /// The first of the matching faults' codes.
        std::optional<std::uint32_t> code() const { return m_code; }
        std::optional<std::uint32_t> version() const { return m_version; }

        /// What is to be done to a block; a fault counts as fired once its block has been changed.
        std::optional<std::uint32_t> dataSize() const { return m_dataSize; }
        std::optional<std::uint32_t> count() const { return m_count; }
        bool noData() const { return m_noData; }
        void blockHandedOut() const;

    private:
        friend class FaultPlan;
        struct Planned;
        Milliseconds m_delay{0};
        std::optional<std::uint32_t> m_code;
        std::optional<std::uint32_t> m_version;
        std::optional<std::uint32_t> m_dataSize;
        std::optional<std::uint32_t> m_count;
        bool m_noData = false;
        FaultPlan* m_plan = nullptr;
        std::vector<std::shared_ptr<Planned>> m_blockFaults;
    };

    void add(Fault fault);
    void clear();
    /// To be called once for each call.
    Effects match(std::string_view function, std::optional<std::uint32_t> opcode);
    std::vector<std::string> unfired() const;

private:
    mutable std::mutex m_mutex;
    std::vector<std::shared_ptr<Effects::Planned>> m_planned;
};

} // namespace radiosim
