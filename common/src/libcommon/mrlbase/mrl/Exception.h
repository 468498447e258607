// The exceptions of Basekit.
#pragma once

#include <mrl/String.h>

namespace mrl {

/// A failure with a text for the user.
class Exception {
public:
    explicit Exception(String text) : m_text(std::move(text)) {}
    Exception(const Exception&) = default;
    Exception& operator=(const Exception&) = default;
    virtual ~Exception();

    /// What went wrong, for the user.
    virtual String toString() const { return m_text; }

private:
    String m_text;
};

/// A broken invariant, raised with a code and no arguments. Deliberately not an mrl::Exception:
/// only catch-all handlers see it.
struct StructuredException {
    Uint32 code;
};

} // namespace mrl
