// The exceptions that the framework raises itself.
#include <afx.h>

void CException::Delete() {
    if (m_bAutoDelete) {
        delete this; // NOLINT(cppcoreguidelines-owning-memory): made with new by whoever threw it
    }
}

void AFXAPI AfxThrowResourceException() {
    // Not made with new: what reports a lack of resources must not need any.
    static CResourceException exception(FALSE);
    throw &exception; // NOLINT(misc-throw-by-value-catch-by-reference): the documented form
}
