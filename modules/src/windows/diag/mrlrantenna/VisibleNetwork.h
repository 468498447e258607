// One network that the card sees, as texts that are ready to be shown.
#pragma once

#include <mrl/String.h>

/// A record of the visible-network list. Copies are independent.
class VisibleNetwork {
public:
    VisibleNetwork() = default;
    VisibleNetwork(const VisibleNetwork&) = default;
    VisibleNetwork& operator=(const VisibleNetwork&) = default;
    virtual ~VisibleNetwork();

    // Each a copy of one text in the language in which the record was made.
    mrl::String getSsid() const { return m_ssid; }
    mrl::String getSecurity() const { return m_security; }
    mrl::String getConnectable() const { return m_connectable; }
    mrl::String getBssType() const { return m_bssType; }
    mrl::String getAuthAlgorithm() const { return m_authAlgorithm; }
    mrl::String getConnected() const { return m_connectedText; }

    /// Rates m_signalQuality in a word, keeps the word in the record and returns it: "EXCELLENT"
    /// from 80 %, "VERY_GOOD" from 60, "GOOD" from 40, "LOW" from 20, "VERY_LOW" from 1,
    /// "NO_SIGNAL" at 0; empty for a negative quality.
    mrl::String getSignalQualityText();

    mrl::String m_spareText1;        ///< never filled
    mrl::String m_ssid;              ///< the name; never empty in a stored record
    mrl::String m_security;          ///< whether security is enabled
    mrl::String m_connectable;       ///< whether the interface could connect to it
    mrl::String m_bssType;           ///< infrastructure or ad hoc
    mrl::Int32 m_signalQuality = 0;  ///< percent, 0 to 100; users may overwrite it with a mean
    mrl::String m_authAlgorithm;     ///< the default authentication algorithm
    mrl::String m_spareText2;        ///< never filled
    mrl::String m_connectedText;     ///< whether the interface is connected to it
    mrl::String m_signalQualityText; ///< empty until getSignalQualityText() is called
    bool m_isConnected = false;      ///< the same as m_connectedText, for code
};

/// The rule that merges names: whether a network `name` counts as the one of the name `known`. It
/// does when `known` occurs in it, by letter case: Lab-5G counts as Lab.
bool countsAs(const mrl::String& name, const mrl::String& known);

/// Whether the network `name` is the access point that a person named `wanted`: without white space
/// at its ends it is the same in any letter case. `wanted` is taken as it is.
bool isAccessPoint(mrl::String name, const mrl::String& wanted);
