#include "FaultPlan.h"

#include <nativewifi/Api.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace radiosim {

namespace {

#define RADIOSIM_NAME(result, name, arguments, errors) #name,
constexpr std::string_view functionNames[] = {NATIVEWIFI_WLAN_FUNCTIONS(RADIOSIM_NAME)
                                                  NATIVEWIFI_RPC_FUNCTIONS(RADIOSIM_NAME)};
#undef RADIOSIM_NAME

constexpr std::string_view opcodeFunctions[] = {"WlanQueryInterface", "WlanSetInterface"};
constexpr std::string_view blockFunctions[] = {"WlanEnumInterfaces", "WlanQueryInterface",
                                               "WlanGetAvailableNetworkList",
                                               "WlanGetNetworkBssList"};

template <std::size_t size>
bool isOneOf(const std::string_view (&names)[size], std::string_view name) {
    return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

// In words, for a test's message.
std::string inWords(const Fault& fault) {
    std::string text = fault.function;
    if (fault.opcode) {
        text += " of opcode " + std::to_string(*fault.opcode);
    }
    text += fault.nth == 0 ? ", every call" : ", call " + std::to_string(fault.nth);
    const auto add = [&text](const char* name, const std::optional<std::uint32_t>& value) {
        text += value ? std::string(", ") + name + " " + std::to_string(*value) : "";
    };
    if (fault.delay.count() != 0) {
        text += ", delay " + std::to_string(fault.delay.count()) + " ms";
    }
    add("code", fault.code);
    add("dataSize", fault.dataSize);
    add("count", fault.count);
    text += fault.noData ? ", noData" : "";
    add("version", fault.version);
    return text;
}

} // namespace

std::string faultMistake(const Fault& fault) {
    if (!isOneOf(functionNames, fault.function)) {
        return "there is no function \"" + fault.function + "\"";
    }
    if (fault.opcode && !isOneOf(opcodeFunctions, fault.function)) {
        return fault.function + " has no opcode";
    }
    if (fault.dataSize && fault.function != "WlanQueryInterface") {
        return "dataSize is for WlanQueryInterface alone";
    }
    if ((fault.count || fault.noData) && !isOneOf(blockFunctions, fault.function)) {
        return fault.function + " hands out no block";
    }
    if (fault.version && fault.function != "WlanOpenHandle") {
        return "version is for WlanOpenHandle alone";
    }
    if (fault.code && fault.function == "WlanFreeMemory") {
        return "WlanFreeMemory returns no code";
    }
    if (fault.delay.count() == 0 && !fault.code && !fault.dataSize && !fault.count &&
        !fault.noData && !fault.version) {
        return "a fault needs one of delayMs, code, dataSize, count, noData and version";
    }
    return {};
}

struct FaultPlan::Effects::Planned {
    Fault fault;
    std::uint32_t calls = 0;
    bool fired = false;
};

void FaultPlan::Effects::blockHandedOut() const {
    if (m_plan == nullptr) {
        return;
    }
    const std::lock_guard lock(m_plan->m_mutex);
    for (const std::shared_ptr<Planned>& planned : m_blockFaults) {
        planned->fired = true;
    }
}

void FaultPlan::add(Fault fault) {
    const std::lock_guard lock(m_mutex);
    m_planned.push_back(
        std::make_shared<Effects::Planned>(Effects::Planned{.fault = std::move(fault)}));
}

void FaultPlan::clear() {
    const std::lock_guard lock(m_mutex);
    m_planned.clear();
}

FaultPlan::Effects FaultPlan::match(std::string_view function,
                                    std::optional<std::uint32_t> opcode) {
    Effects effects;
    effects.m_plan = this;
    const std::lock_guard lock(m_mutex);
    for (const std::shared_ptr<Effects::Planned>& planned : m_planned) {
        const Fault& fault = planned->fault;
        if (fault.function != function || (fault.opcode && fault.opcode != opcode)) {
            continue;
        }
        ++planned->calls;
        if (fault.nth != 0 && fault.nth != planned->calls) {
            continue;
        }
        if (fault.delay.count() != 0 || fault.code || fault.version) {
            planned->fired = true;
        }
        effects.m_delay += fault.delay;
        if (fault.code && !effects.m_code) {
            effects.m_code = fault.code;
        }
        if (fault.version) {
            effects.m_version = fault.version;
        }
        if (fault.dataSize || fault.count || fault.noData) {
            effects.m_blockFaults.push_back(planned);
        }
        if (fault.dataSize) {
            effects.m_dataSize = fault.dataSize;
        }
        if (fault.count) {
            effects.m_count = fault.count;
        }
        effects.m_noData = effects.m_noData || fault.noData;
    }
    return effects;
}

std::vector<std::string> FaultPlan::unfired() const {
    const std::lock_guard lock(m_mutex);
    std::vector<std::string> texts;
    for (const std::shared_ptr<Effects::Planned>& planned : m_planned) {
        if (!planned->fired) {
            texts.push_back(inWords(planned->fault));
        }
    }
    return texts;
}

} // namespace radiosim
