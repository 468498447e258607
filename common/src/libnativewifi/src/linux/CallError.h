// The end of a client function by an error, from wherever it is found.
#pragma once

#include <nativewifi/WlanTypes.h>

#include <exception>

namespace nativewifi::linux_radio {

/// The table's functions return its code.
class CallError : public std::exception {
public:
    explicit CallError(DWORD code) : m_code(code) {}
    DWORD code() const { return m_code; }

private:
    DWORD m_code;
};

/// The code for an errno of nl80211, netlink or rfkill; ERROR_GEN_FAILURE for one that has no
/// meaning here.
DWORD errorOf(int error);

/// Throws CallError unless `error` is 0.
void check(int error);

} // namespace nativewifi::linux_radio
