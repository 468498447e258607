#include <mrl/LineInput.h>

#include <array>
#include <cerrno>
#include <poll.h>
#include <unistd.h>

namespace mrl {

namespace {

class StandardInput final : public LineInput {
public:
    std::optional<std::string> line(const std::function<bool()>& stop) override {
        for (;;) {
            if (stop()) {
                return std::nullopt;
            }
            const std::size_t end = m_read.find('\n');
            if (end != std::string::npos || (m_ended && !m_read.empty())) {
                std::string text = m_read.substr(0, end);
                m_read.erase(0, end == std::string::npos ? end : end + 1);
                return text;
            }
            if (m_ended) {
                return std::nullopt;
            }
            readMore();
        }
    }

private:
    // What is there; waits a little for it.
    void readMore() {
        constexpr int MILLISECONDS = 100;
        pollfd input = {.fd = STDIN_FILENO, .events = POLLIN, .revents = 0};
        if (poll(&input, 1, MILLISECONDS) <= 0) { // EINTR: a signal, perhaps the request to stop
            return;
        }
        std::array<char, 1024> bytes{};
        const ssize_t count = ::read(STDIN_FILENO, bytes.data(), bytes.size());
        if (count > 0) {
            m_read.append(bytes.data(), static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) { // EIO: the terminal is gone
            m_ended = true;
        }
    }

    std::string m_read;
    bool m_ended = false;
};

} // namespace

LineInput& LineInput::ofProcess() {
    static StandardInput input;
    return input;
}

} // namespace mrl
