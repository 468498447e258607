#pragma once

#include <optional>
#include <string>

namespace mrl {

/// Waits until the process's standard input has something; on POSIX for a tenth of a second at
/// most. \return its bytes, of a Windows console in UTF-8; none if nothing has arrived; nothing at
/// its end
std::optional<std::string> readStandardInput();

} // namespace mrl
