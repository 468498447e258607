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
    throw &exception; // the documented form
}

} // namespace

void AFXAPI AfxThrowResourceException() {
    throwTheOne<CResourceException>();
}

void AFXAPI AfxThrowNotSupportedException() {
    throwTheOne<CNotSupportedException>();
}
