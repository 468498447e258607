// What the program writes, kept instead of shown.
#pragma once

#include <mrl/OutputStream.h>

#include <string>

namespace fuzz {

/// While it lives, `stream` writes here.
class Captured final : public mrl::OutputStream::Receiver {
public:
    explicit Captured(mrl::OutputStream& stream)
        : m_stream(stream), m_before(stream.redirect(this)) {}
    ~Captured() override { m_stream.redirect(m_before); }

    void write(std::string_view utf8) override { m_text += utf8; }
    const std::string& text() const { return m_text; }

private:
    mrl::OutputStream& m_stream;
    mrl::OutputStream::Receiver* m_before;
    std::string m_text;
};

} // namespace fuzz
