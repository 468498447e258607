// The framework's exception.
#pragma once

#include <tesk5/TeskString.h>

namespace tesk5 {

/// A misuse of the framework, or a failure inside it. One that leaves a test function makes that
/// test's result INTERNALERROR; the run goes on.
class TeskException {
public:
    explicit TeskException(TeskString text) : m_text(std::move(text)) {}
    TeskException(const TeskException&) = default;
    TeskException& operator=(const TeskException&) = default;
    virtual ~TeskException() = default;

    /// What went wrong, for a person.
    virtual mrl::String toString() const { return m_text.mrlString(); }

private:
    TeskString m_text;
};

} // namespace tesk5
