// A source of readings that is asked in its own rhythm, and how it stands.
#pragma once

#include <readings/ChainSource.h>
#include <watch/Track.h>

#include <optional>

namespace watch {

/// How the source of readings stands.
struct SourceState {
    DWORD error = ERROR_SUCCESS;     ///< why the system gives no list
    DWORD scanError = ERROR_SUCCESS; ///< why it refused the last scan
    bool listed = false;             ///< the target was connected or listed at the last look
    std::size_t scans = 0;           ///< sent so far, for earlier targets too
    /// The time from one scan to the next; nothing while the connection is asked.
    std::optional<Moment> scanEvery;
};

/// Of one adapter. One thread.
class Source {
public:
    /// \param target without a name or an address: every network
    Source(const GUID& interfaceGuid, readings::Target target);

    /// Asks for another target from now on.
    void follow(readings::Target target);
    /// When the next look is due. Looks keep their distances however long they take.
    Moment nextLook() const { return m_nextLook; }
    /// Platform: those of readings::LevelSource::look()
    std::vector<readings::Reading> look();
    /// The chains that made a reading of the last look; empty where the system does not say, and
    /// while every network is asked for: that would take a query for each.
    readings::ChainLevels chainsOf(const readings::Reading& reading);
    /// As the last look found it.
    const SourceState& state() const { return m_state; }

private:
    GUID m_guid;
    bool m_everything;
    std::optional<readings::LevelSource> m_source;
    readings::ChainSource m_chains;
    std::size_t m_scansBefore = 0; ///< of the sources before this one
    SourceState m_state;
    Moment m_nextLook;
};

} // namespace watch
