// Why the system did not open, read or write a file, as a message.
#pragma once

#include "texts/Message.h"

#include <mrl/Files.h>

#include <system_error>

namespace tesk5 {

/// The reason behind `error`: our words for the common ones, else the system's; `none` when the
/// system gives no reason.
Message systemReason(const std::error_code& error, const Message& none);

/// Why a file was not read.
Message fileReason(const mrl::FileFailure& failure);

/// Why a file was not written.
Message writeReason(const mrl::FileFailure& failure);

} // namespace tesk5
