// Replaces in a capture what tells where a PC stands: names, addresses and GUIDs.
#pragma once

#include "StandIns.h"

#include <capture/CaptureFile.h>

#include <array>
#include <functional>
#include <map>
#include <random>

namespace capture {

/// One thread at a time. Information elements, time stamps of access points, data of notifications
/// and unknown blocks become zeros of the same length.
class NameHider {
public:
    NameHider() = default;

    /// Hides what the command was given. To be called first: the names in it never change their
    /// stand-ins.
    void hideRun(mrl::Json& run);
    void hide(Step& step);

private:
    using Address = std::array<unsigned char, 6>;
    /// Gets each name in turn, and may change it.
    using Visitor = std::function<void(std::string& name)>;

    // Learns all names that `visit` shows, then has each replaced.
    void replaceNames(const std::function<void(const Visitor&)>& visit);
    std::string hiddenText(const std::string& text);
    GUID hiddenGuid(const GUID& guid);
    void hideAddress(DOT11_MAC_ADDRESS& address);
    void hideGuids(Call& call);
    void hideBlock(const Call& call, Bytes& bytes);
    void visitNames(const Call& call, Bytes& bytes, const Visitor& visitor);

    StandIns m_names;
    std::map<std::string, GUID> m_guids; ///< by their texts
    std::map<Address, Address> m_addresses;
    std::random_device m_random;
};

} // namespace capture
