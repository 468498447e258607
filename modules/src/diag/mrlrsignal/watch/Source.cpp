#include <watch/Source.h>

#include <algorithm>
#include <utility>

namespace watch {

namespace {

bool meansEverything(const readings::Target& target) {
    return !target.ssid && !target.bssid;
}

} // namespace

Source::Source(const GUID& interfaceGuid, readings::Target target)
    : m_guid(interfaceGuid), m_everything(meansEverything(target)),
      m_source(std::in_place, interfaceGuid, std::move(target)), m_chains(interfaceGuid),
      m_nextLook(mrl::Clock::current().now()) {}

void Source::follow(readings::Target target) {
    m_scansBefore += m_source->scans();
    m_everything = meansEverything(target);
    m_source.emplace(m_guid, std::move(target));
    m_state = SourceState();
    m_state.scans = m_scansBefore;
    m_nextLook = mrl::Clock::current().now();
}

std::vector<readings::Reading> Source::look() {
    const Moment now = mrl::Clock::current().now();
    const std::size_t scans = m_source->scans();
    readings::Look look = m_source->look();
    m_state.error = look.error;
    // Not every look asks for a scan: the answer to the last one stays.
    if (look.scanError != ERROR_SUCCESS || m_source->scans() != scans) {
        m_state.scanError = look.scanError;
    }
    m_state.listed = look.listed;
    m_state.scans = m_scansBefore + m_source->scans();
    m_state.scanEvery = m_source->scanEvery();
    m_nextLook = std::max(m_nextLook + m_source->pause(), now);
    return std::move(look.readings);
}

readings::ChainLevels Source::chainsOf(const readings::Reading& reading) {
    return m_everything || !readings::ChainSource::isKnownToSystem() ? readings::ChainLevels()
                                                                     : m_chains.levelsOf(reading);
}

} // namespace watch
