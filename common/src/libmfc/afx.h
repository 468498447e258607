// The root of the class tree and the exceptions that the framework raises itself.
#pragma once

// MFC chooses how windows.h is read, so its headers come first.
#ifdef _WINDOWS_
#error "windows.h was included before the MFC headers; include <afxwin.h> first"
#endif

#include <windows.h>

#include <new>

#ifndef AFXAPI
#define AFXAPI __stdcall
#endif

/// Marks a message handler for the reader; empty for the compiler.
#ifndef afx_msg
#define afx_msg
#endif

/// Root of the class tree. Objects have an identity (a window, an application) and no copies.
class CObject {
public:
    virtual ~CObject() = default;
    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    // Operators of its own hide the global ones: an object that may be refused for lack of memory
    // is made with `::new (std::nothrow)`.
    static void* operator new(std::size_t size) { return ::operator new(size); }
    static void* operator new(std::size_t /*size*/, void* place) { return place; }
    static void operator delete(void* object) { ::operator delete(object); }
    static void operator delete(void* /*object*/, void* /*place*/) {}

protected:
    CObject() = default;
};

/// A failure reported by the framework. Thrown and caught as a pointer: `catch (CException* e)`,
/// and the catcher calls Delete().
class CException : public CObject {
public:
    /// \param bAutoDelete whether Delete() frees the object: TRUE for one made with new
    explicit CException(BOOL bAutoDelete) : m_bAutoDelete(bAutoDelete) {}

    /// Frees the object if it was made with new; it is not to be used afterwards.
    void Delete();

private:
    BOOL m_bAutoDelete;
};

/// Windows could not find or create a requested resource.
class CResourceException : public CException {
public:
    explicit CResourceException(BOOL bAutoDelete = TRUE) : CException(bAutoDelete) {}
};

/// Something was requested that does not exist, such as a control that the dialog lacks.
class CNotSupportedException : public CException {
public:
    explicit CNotSupportedException(BOOL bAutoDelete = TRUE) : CException(bAutoDelete) {}
};

/// These throw the process's one object of that class; they cost no memory.
[[noreturn]] void AFXAPI AfxThrowResourceException();
[[noreturn]] void AFXAPI AfxThrowNotSupportedException();
