// Message maps: the table by which a class says which of its operations handles which message.
//
// A row holds a function that takes the message's parameters apart and calls the handler through
// its own class, so that a handler with a wrong signature does not compile.
#pragma once

class CCmdTarget;

/// One row. `nMessage` 0 ends the table.
struct AFX_MSGMAP_ENTRY {
    UINT nMessage;
    UINT nCode;   ///< notification code for WM_COMMAND, else 0
    UINT nID;     ///< first control id, or 0 for messages without one
    UINT nLastID; ///< last control id
    LRESULT (*pfn)(CCmdTarget* target, WPARAM wParam, LPARAM lParam);
};

/// The rows of one class and the way to those of its base class.
struct AFX_MSGMAP {
    const AFX_MSGMAP* (*pfnGetBaseMap)(); ///< null at the root
    const AFX_MSGMAP_ENTRY* lpEntries;
};

/// In the class: it has a message map. Ends with `protected:`.
#define DECLARE_MESSAGE_MAP()                                                                      \
protected:                                                                                         \
    static const AFX_MSGMAP* GetThisMessageMap();                                                  \
    const AFX_MSGMAP* GetMessageMap() const override;

/// In the source: begins the rows of `theClass`; messages without a row go to `baseClass`.
#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                                     \
    const AFX_MSGMAP* theClass::GetMessageMap() const {                                            \
        return GetThisMessageMap();                                                                \
    }                                                                                              \
    const AFX_MSGMAP* theClass::GetThisMessageMap() {                                              \
        using ThisClass [[maybe_unused]] = theClass;                                               \
        using TheBaseClass = baseClass;                                                            \
        static const AFX_MSGMAP_ENTRY messageEntries[] = {

// The macro closes what the one above opens.
// clang-format off
#define END_MESSAGE_MAP()                                                                          \
            {0, 0, 0, 0, nullptr}                                                                  \
        };                                                                                         \
        static const AFX_MSGMAP messageMap = {&TheBaseClass::GetThisMessageMap, messageEntries};   \
        return &messageMap;                                                                        \
    }
// clang-format on
