#include "VisibleNetwork.h"

#include "ModuleObjects.h"

namespace {

// The first band whose floor the quality reaches names it.
struct QualityBand {
    mrl::Int32 floor;
    tesk5::LocalizedString* const* word;
};
constexpr QualityBand qualityBands[] = {
    {80, &texts::excellent}, {60, &texts::veryGood}, {40, &texts::good},
    {20, &texts::low},       {1, &texts::veryLow},   {0, &texts::noSignal},
};

} // namespace

VisibleNetwork::~VisibleNetwork() = default;

mrl::String VisibleNetwork::getSignalQualityText() {
    m_signalQualityText.clear();
    for (const QualityBand& band : qualityBands) {
        if (m_signalQuality >= band.floor) {
            m_signalQualityText = texts::get(*band.word);
            break;
        }
    }
    return m_signalQualityText;
}

bool countsAs(const mrl::String& name, const mrl::String& known) {
    return name.find(known) != mrl::String::NOT_FOUND;
}

bool isAccessPoint(mrl::String name, const mrl::String& wanted) {
    return mrl::String::equalNoCase(wanted, name.trim());
}
