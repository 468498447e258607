// The root of the class tree and the exceptions that the framework raises itself.
#pragma once

#include <windows.h>

#ifndef AFXAPI
#define AFXAPI __stdcall
#endif

/// Marks a message handler for the reader; means nothing to the compiler.
#ifndef afx_msg
#define afx_msg
#endif

/// Root of the class tree. Objects have an identity (a window, an application) and no copies.
class CObject {
public:
    virtual ~CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

protected:
    CObject() = default;
};

/// A failure reported by the framework. Thrown and caught as a pointer: `catch (CException* e)`,
/// and the catcher calls Delete().
class CException : public CObject {
public:
    /// \param bAutoDelete whether Delete() frees the object: TRUE for one made with new
    explicit CException(BOOL bAutoDelete) : m_bAutoDelete(bAutoDelete) {}

    /// Ends the catcher's hold on the object, which is not to be touched afterwards.
    void Delete();

private:
    BOOL m_bAutoDelete;
};

/// Windows could not find or create a requested resource.
class CResourceException : public CException {
public:
    explicit CResourceException(BOOL bAutoDelete = TRUE) : CException(bAutoDelete) {}
};

/// Throws the process's one CResourceException; costs no memory.
[[noreturn]] void AFXAPI AfxThrowResourceException();
