// What the live view knows: pure numbers, changed by readings and by keys.
#pragma once

#include <watch/Source.h>

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace watch {

/// A radio in the list of all networks.
struct ListedRadio {
    readings::Bssid bssid{};
    const Track* track = nullptr; ///< valid until the model changes
    double level = 0;             ///< dBm: the median of the last ten seconds, else the last one
};

/// Of one adapter. One thread.
class Model {
public:
    /// \param target nothing for the list of all networks
    Model(std::string adapter, std::optional<readings::Target> target);

    // --- what comes from the radio ---

    /// Takes the readings of one look.
    void take(const std::vector<readings::Reading>& readings, Moment now);
    void setSource(const SourceState& state) { m_source = state; }
    /// The chains of the radio that is watched; none where the system does not say.
    void setChains(readings::ChainLevels chains) { m_chains = std::move(chains); }

    // --- what keys do ---

    /// Watches the target from now on; what was heard of its radios stays. The reference goes.
    void watch(readings::Target target);
    /// Goes back to the list of all networks.
    void listAll();
    /// Moves the mark in the list by `rows`, down when positive, and not beyond its ends.
    void moveMark(int rows, Moment now);
    /// The median of the last ten seconds becomes the reference; nothing happens without one.
    void setReference(Moment now);
    void dropReference() { m_reference.reset(); }
    void restartBest();
    /// \param reason why there is no sound; empty when there is
    void setTone(bool on, std::string reason = {});

    // --- what is shown ---

    const std::string& adapter() const { return m_adapter; }
    /// Nothing in the list of all networks.
    const std::optional<readings::Target>& target() const { return m_target; }
    const SourceState& source() const { return m_source; }
    const readings::ChainLevels& chains() const { return m_chains; }
    std::optional<double> reference() const { return m_reference; }
    bool tone() const { return m_tone; }
    /// Why a tone that was asked for does not sound.
    const std::string& toneFailure() const { return m_toneFailure; }

    /// The radio that is watched: of those that the target stands for the one that the connection
    /// is to, else the strongest. Another one must be stronger by more than 3 dB, or the one before
    /// silent for ten seconds. Null before it was heard.
    const Track* followed() const;
    /// How many radios that the target stands for were heard within the last minute.
    std::size_t candidates() const;
    /// All radios that were heard within the last minute, the strongest first.
    std::vector<ListedRadio> list(Moment now) const;
    /// The radio that is marked; nothing in an empty list.
    std::optional<readings::Bssid> marked() const { return m_marked; }
    /// The target that the mark stands for.
    std::optional<readings::Target> markedTarget() const;

private:
    bool isMeant(const readings::Reading& reading) const;
    void forgetOld(Moment now);
    void choose(Moment now);

    std::string m_adapter;
    std::optional<readings::Target> m_target;
    SourceState m_source;
    std::map<readings::Bssid, Track> m_tracks;
    std::optional<readings::Bssid> m_followed;
    std::optional<readings::Bssid> m_marked;
    readings::ChainLevels m_chains;
    std::optional<double> m_reference;
    bool m_tone = false;
    std::string m_toneFailure;
};

} // namespace watch
