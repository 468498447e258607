// The exceptions that the framework raises itself.
#include <afx.h>

void CException::Delete() {
    if (m_bAutoDelete) {
        delete this; // made with new
    }
}

namespace {

// Not made with new: reporting a lack of resources must not need memory.
template <class Exception>
[[noreturn]] void throwTheOne() {
    static Exception exception(FALSE);
    // The documented form. NOLINTNEXTLINE(cert-err09-cpp,cert-err61-cpp)
    throw &exception;
}

} // namespace

void AFXAPI AfxThrowResourceException() {
    throwTheOne<CResourceException>();
}

void AFXAPI AfxThrowNotSupportedException() {
    throwTheOne<CNotSupportedException>();
}
