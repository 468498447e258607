#include <mrl/LineInput.h>

#include <mrl/Unicode.h>

#include <windows.h>

#include <array>

namespace mrl {

namespace {

class StandardInput final : public LineInput {
public:
    std::optional<std::string> line(const std::function<bool()>& stop) override {
        while (!stop()) {
            const std::size_t end = m_read.find('\n');
            if (end != std::string::npos || (m_ended && !m_read.empty())) {
                std::string text = m_read.substr(0, end);
                m_read.erase(0, end == std::string::npos ? end : end + 1);
                if (text.ends_with('\r')) {
                    text.pop_back();
                }
                return text;
            }
            if (m_ended) {
                break;
            }
            readMore();
        }
        return std::nullopt;
    }

private:
    void readMore() {
        constexpr DWORD MOST = 1024;
        const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
        DWORD mode = 0;
        DWORD count = 0;
        if (GetConsoleMode(input, &mode) != 0) {
            std::array<wchar_t, MOST> units{};
            // ERROR_OPERATION_ABORTED, with nothing read: Ctrl+C
            m_ended = ReadConsoleW(input, units.data(), MOST, &count, nullptr) == 0 || count == 0;
            m_read += toUtf8(CharView(units.data(), count));
            return;
        }
        std::array<char, MOST> bytes{};
        // ERROR_BROKEN_PIPE, ERROR_INVALID_HANDLE: nothing more comes
        m_ended = ReadFile(input, bytes.data(), MOST, &count, nullptr) == 0 || count == 0;
        m_read.append(bytes.data(), count);
    }

    std::string m_read; ///< in UTF-8; a console gives whole characters
    bool m_ended = false;
};

} // namespace

LineInput& LineInput::ofProcess() {
    static StandardInput input;
    return input;
}

} // namespace mrl
