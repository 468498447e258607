#include "Observations.h"

#include <tesk5/DiagModule.h>

using tesk5::DiagModule;

namespace {
constexpr mrl::Uint32 HIGHEST_QUALITY = 100;
} // namespace

void recordNetworks(const WirelessDevice& device, std::optional<mrl::Uint32> measured) {
    tesk5::Survey survey{"VISIBLE_NETWORKS", "%", 0, HIGHEST_QUALITY, {}};
    for (mrl::Uint32 i = 0; i < device.m_visibleNetworks.size(); ++i) {
        const VisibleNetwork& network = device.m_visibleNetworks[i];
        survey.entries.push_back({tesk5::TeskString(network.m_ssid),
                                  static_cast<mrl::Uint32>(network.m_signalQuality),
                                  measured == i});
    }
    DiagModule::surveyed(std::move(survey));
}

void recordStrength(mrl::Uint32 percent, std::vector<tesk5::Limit> limits) {
    DiagModule::measured(
        {"DetectedSignalStrength", percent, "%", 0, HIGHEST_QUALITY, std::move(limits)});
}
