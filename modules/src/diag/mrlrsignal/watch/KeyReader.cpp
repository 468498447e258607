#include <watch/KeyReader.h>

#include <utility>

namespace watch {

namespace {

constexpr char ESCAPE_BYTE = '\x1b';
constexpr char CTRL_C = '\x03';

struct Sequence {
    std::string_view bytes; ///< behind the introducer "Esc [" or "Esc O"
    Key key;
};
constexpr Sequence sequences[] = {
    {"A", Key::UP},       {"B", Key::DOWN},       {"H", Key::FIRST},  {"F", Key::LAST},
    {"5~", Key::PAGE_UP}, {"6~", Key::PAGE_DOWN}, {"1~", Key::FIRST}, {"4~", Key::LAST},
    {"7~", Key::FIRST},   {"8~", Key::LAST},      {"M", Key::ENTER},
};

Key keyOf(std::string_view bytes) {
    for (const Sequence& sequence : sequences) {
        if (sequence.bytes == bytes) {
            return sequence.key;
        }
    }
    return Key::NONE;
}

// The end of a sequence is its first byte from 0x40 to 0x7E.
bool isFinal(char byte) {
    return byte >= '@' && byte <= '~';
}

KeyPress plain(char byte) {
    if (byte == CTRL_C) {
        return {Key::INTERRUPT};
    }
    if (byte == '\r' || byte == '\n') {
        return {Key::ENTER};
    }
    return byte > ' ' && byte <= '~' ? KeyPress{Key::CHARACTER, byte} : KeyPress{};
}

} // namespace

KeyPress KeyReader::next() {
    while (!m_bytes.empty()) {
        KeyPress press;
        std::size_t used = 1;
        if (m_bytes.front() != ESCAPE_BYTE) {
            press = plain(m_bytes.front());
        } else if (m_bytes.size() == 1) {
            return {};
        } else if (m_bytes[1] == '[' || m_bytes[1] == 'O') {
            constexpr std::size_t INTRODUCER = 2;
            used = INTRODUCER;
            while (used < m_bytes.size() && !isFinal(m_bytes[used])) {
                ++used;
            }
            if (used == m_bytes.size()) {
                return {};
            }
            ++used;
            press.key = keyOf(std::string_view(m_bytes).substr(INTRODUCER, used - INTRODUCER));
        } else {
            press.key = Key::ESCAPE; // and another key right after it
        }
        m_bytes.erase(0, used);
        if (press.key != Key::NONE) {
            return press;
        }
    }
    return {};
}

KeyPress KeyReader::giveUp() {
    const bool waited = !std::exchange(m_bytes, {}).empty();
    return {waited ? Key::ESCAPE : Key::NONE};
}

} // namespace watch
