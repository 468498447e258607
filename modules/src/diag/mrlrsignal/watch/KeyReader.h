// Keys out of the bytes that a terminal sends.
#pragma once

#include <watch/Terminal.h>

#include <deque>
#include <string>
#include <string_view>

namespace watch {

/// Understands the sequences of xterm and its relatives; others, and characters beyond ASCII, are
/// skipped. One thread.
class KeyReader {
public:
    void add(std::string_view bytes) { m_bytes += bytes; }
    /// The next key; Key::NONE when the bytes are used up or begin a sequence that is not whole.
    KeyPress next();
    /// Whether an Escape waits that may be the key or the begin of a sequence.
    bool isUndecided() const { return !m_bytes.empty(); }
    /// No more bytes came for a while: what waits is the key Escape.
    KeyPress giveUp();

private:
    std::string m_bytes;
};

} // namespace watch
