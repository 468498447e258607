#include "StandardInput.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace mrl {

std::optional<std::string> readStandardInput() {
    constexpr int MILLISECONDS = 100;
    pollfd input = {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
    if (poll(&input, 1, MILLISECONDS) <= 0) { // EINTR: a signal, perhaps the request to stop
        return "";
    }
    std::array<char, 1024> bytes{};
    const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) {
        return "";
    }
    if (count <= 0) { // EIO: the terminal is gone
        return std::nullopt;
    }
    return std::string(bytes.data(), static_cast<std::size_t>(count));
}

} // namespace mrl
