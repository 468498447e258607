#include "CallError.h"

#include <algorithm>
#include <cerrno>
#include <iterator>

namespace nativewifi::linux_radio {

namespace {

constexpr struct {
    int error;
    DWORD code;
} meanings[] = {
    {0, ERROR_SUCCESS},
    {EPERM, ERROR_ACCESS_DENIED},
    {EACCES, ERROR_ACCESS_DENIED},
    {ENETDOWN, ERROR_NDIS_DOT11_POWER_STATE_INVALID},
    {ERFKILL, ERROR_NDIS_DOT11_POWER_STATE_INVALID},
    {ENODEV, ERROR_NOT_FOUND},
    {EBUSY, ERROR_BUSY},
    {EOPNOTSUPP, ERROR_NOT_SUPPORTED},
    {EINVAL, ERROR_INVALID_PARAMETER},
    {ERANGE, ERROR_INVALID_PARAMETER},
    {ENOTCONN, ERROR_INVALID_STATE},
    {ENOMEM, ERROR_NOT_ENOUGH_MEMORY},
    {ENOBUFS, ERROR_NOT_ENOUGH_MEMORY},
    {EMFILE, ERROR_REMOTE_SESSION_LIMIT_EXCEEDED},
    {ENFILE, ERROR_REMOTE_SESSION_LIMIT_EXCEEDED},
    {ETIMEDOUT, ERROR_TIMEOUT},
    // The kernel has no nl80211, no generic netlink, or no netlink at all.
    {ENOENT, ERROR_SERVICE_NOT_ACTIVE},
    {EPROTONOSUPPORT, ERROR_SERVICE_NOT_ACTIVE},
    {EAFNOSUPPORT, ERROR_SERVICE_NOT_ACTIVE},
};

} // namespace

DWORD errorOf(int error) {
    const auto* const known =
        std::find_if(std::begin(meanings), std::end(meanings),
                     [error](const auto& meaning) { return meaning.error == error; });
    return known == std::end(meanings) ? ERROR_GEN_FAILURE : known->code;
}

void check(int error) {
    if (error != 0) {
        throw CallError(errorOf(error));
    }
}

} // namespace nativewifi::linux_radio
