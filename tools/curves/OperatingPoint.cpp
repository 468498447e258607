#include "OperatingPoint.h"

#include <nativewifi/Api.h>

#include <mrl/VirtualClock.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <memory>
#include <random>

namespace curves {

namespace {

using statistics::Rating;

constexpr const char NAME[] = "Lab";

class Clock final : public mrl::VirtualClock {
public:
    Clock() : mrl::VirtualClock(UtcTime{}) {}
    std::chrono::minutes utcOffset(UtcTime /*time*/) override { return {}; }
};

// The connection's received strength: a new value at each question.
class Radio {
public:
    Radio(const Noise& noise, double level, std::uint32_t seed)
        : m_noise(noise), m_level(level), m_random(seed) {}

    // The next readings have nothing in common with the last ones.
    void startOver() { m_deviation = m_noise.deviation * m_normal(m_random); }

    LONG rssi() {
        const auto dbm = static_cast<LONG>(std::lround(m_level + m_deviation));
        const double fresh = std::sqrt(1 - m_noise.carried * m_noise.carried);
        m_deviation =
            m_noise.carried * m_deviation + fresh * m_noise.deviation * m_normal(m_random);
        return dbm;
    }

private:
    Noise m_noise;
    double m_level;
    double m_deviation = 0;
    std::mt19937 m_random;
    std::normal_distribution<double> m_normal;
};

// The table's functions have no argument of ours.
Radio* g_radio = nullptr;

template <typename Structure>
DWORD answer(const Structure& structure, DWORD* size, PVOID* data) {
    auto block = std::make_unique<std::byte[]>(sizeof structure);
    std::memcpy(block.get(), &structure, sizeof structure);
    *data = block.release();
    *size = sizeof structure;
    return ERROR_SUCCESS;
}

WLAN_CONNECTION_ATTRIBUTES connection() {
    WLAN_CONNECTION_ATTRIBUTES attributes{};
    attributes.isState = wlan_interface_state_connected;
    DOT11_SSID& ssid = attributes.wlanAssociationAttributes.dot11Ssid;
    ssid.uSSIDLength = sizeof NAME - 1;
    std::copy_n(NAME, ssid.uSSIDLength, ssid.ucSSID);
    return attributes;
}

DWORD WINAPI openHandle(DWORD, PVOID, DWORD* version, HANDLE* handle) {
    *version = 2;
    *handle = &g_radio;
    return ERROR_SUCCESS;
}
DWORD WINAPI closeHandle(HANDLE, PVOID) {
    return ERROR_SUCCESS;
}
DWORD WINAPI queryInterface(HANDLE, const GUID*, WLAN_INTF_OPCODE opcode, PVOID, DWORD* size,
                            PVOID* data, WLAN_OPCODE_VALUE_TYPE*) {
    switch (opcode) {
    case wlan_intf_opcode_current_connection:
        return answer(connection(), size, data);
    case wlan_intf_opcode_rssi:
        return answer(g_radio->rssi(), size, data);
    default:
        return ERROR_NOT_SUPPORTED;
    }
}
void WINAPI freeMemory(PVOID memory) {
    const std::unique_ptr<std::byte[]> block(static_cast<std::byte*>(memory));
}

// What a source asks of a connection.
nativewifi::Api table() {
    nativewifi::Api functions{};
    functions.WlanOpenHandle = &openHandle;
    functions.WlanCloseHandle = &closeHandle;
    functions.WlanQueryInterface = &queryInterface;
    functions.WlanFreeMemory = &freeMemory;
    return functions;
}

bool isWrong(Rating rating, double level, const statistics::LevelLimits& limits) {
    const bool fails = limits.failing && level < *limits.failing;
    const bool warns = limits.warning && level < *limits.warning;
    switch (rating) {
    case Rating::FAIL:
        return !fails;
    case Rating::BELOW_WARNING:
        return fails || !warns;
    case Rating::PASS:
        return fails || warns;
    case Rating::TOO_CLOSE:
        break;
    }
    return false;
}

} // namespace

OperatingPoint operatingPoint(const readings::SamplingPlan& plan, const Noise& noise, double level,
                              std::size_t runs, std::uint32_t seed) {
    const nativewifi::Api functions = table();
    const nativewifi::ScopedApi scopedApi(functions);
    Radio radio(noise, level, seed);
    g_radio = &radio;
    OperatingPoint point;
    std::array<std::size_t, OperatingPoint::RATINGS> counts{};
    std::size_t wrong = 0;
    std::size_t samples = 0;
    for (std::size_t run = 0; run < runs; ++run) {
        Clock clock;
        const mrl::ScopedClock scopedClock(clock);
        radio.startOver();
        readings::LevelSource source(GUID{}, {.ssid = NAME, .bssid = {}, .band = {}});
        const readings::Sampling sampling = readings::measure(source, plan, nullptr, nullptr);
        const Rating rating = statistics::rate(sampling.sampled.level, plan.limits);
        ++counts.at(static_cast<std::size_t>(rating));
        wrong += isWrong(rating, level, plan.limits) ? 1 : 0;
        samples += sampling.sampled.samples.size();
    }
    g_radio = nullptr;
    const auto all = static_cast<double>(runs);
    std::ranges::transform(counts, point.shares.begin(),
                           [all](std::size_t count) { return static_cast<double>(count) / all; });
    point.wrong = static_cast<double>(wrong) / all;
    point.meanSamples = static_cast<double>(samples) / all;
    return point;
}

} // namespace curves
