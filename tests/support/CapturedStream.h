// Collects what is written to one of Basekit's streams.
#pragma once

#include <mrl/OutputStream.h>

#include <string>

namespace test {

/// While it lives, text that is written to `stream` is collected here.
class CapturedStream final : public mrl::OutputStream::Receiver {
public:
    explicit CapturedStream(mrl::OutputStream& stream)
        : m_stream(stream), m_before(stream.redirect(this)) {}
    ~CapturedStream() override { m_stream.redirect(m_before); }

    void write(std::string_view utf8) override { m_text += utf8; }
    const std::string& text() const { return m_text; }
    void clear() { m_text.clear(); }

private:
    mrl::OutputStream& m_stream;
    mrl::OutputStream::Receiver* m_before;
    std::string m_text;
};

} // namespace test
