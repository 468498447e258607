// Message maps: the table by which a class says which of its operations handles which message.
//
// A row holds a function that takes the message's parameters apart and calls the handler through
// its own class, so that a handler with a wrong signature does not compile.
#pragma once

#include <windows.h>

class CCmdTarget;

/// One row. `nMessage` 0 ends the table.
struct AFX_MSGMAP_ENTRY {
    UINT nMessage;
    UINT nCode;   ///< notification code for WM_COMMAND, else 0
    UINT nID;     ///< first control id, or 0 for messages without one
    UINT nLastID; ///< last control id
    LRESULT (*pfn)(CCmdTarget* target, const MSG& message);
};

/// The rows of one class and the way to those of its base class.
struct AFX_MSGMAP {
    const AFX_MSGMAP* (*pfnGetBaseMap)(); ///< null at the root
    const AFX_MSGMAP_ENTRY* lpEntries;
};

namespace afx {

/// Stands in message maps for all messages in which a control asks its parent for colours.
constexpr UINT CTLCOLOR_MESSAGE = 0x0019;

} // namespace afx

/// In the class: it has a message map. Ends with `protected:`.
#define DECLARE_MESSAGE_MAP()                                                                      \
protected:                                                                                         \
    static const AFX_MSGMAP* GetThisMessageMap();                                                  \
    const AFX_MSGMAP* GetMessageMap() const override;

// The macros below make one function out of three pieces, and rows with braces of their own.
// clang-format off

/// In the source: begins the rows of `theClass`; messages without a row go to `baseClass`.
#define BEGIN_MESSAGE_MAP(theClass, baseClass)                                                     \
    const AFX_MSGMAP* theClass::GetMessageMap() const { return GetThisMessageMap(); }              \
    const AFX_MSGMAP* theClass::GetThisMessageMap() {                                              \
        using ThisClass [[maybe_unused]] = theClass;                                               \
        using TheBaseClass = baseClass;                                                            \
        static const AFX_MSGMAP_ENTRY messageEntries[] = {

#define END_MESSAGE_MAP()                                                                          \
            {0, 0, 0, 0, nullptr}                                                                  \
        };                                                                                         \
        static const AFX_MSGMAP messageMap = {&TheBaseClass::GetThisMessageMap, messageEntries};   \
        return &messageMap;                                                                        \
    }

// One row: `call` is made on `self`, the object as ThisClass, with `message` at hand. A table's rows
// are reached only through an object of its class, so the cast needs no check.
#define AFX_MESSAGE_ROW(id, code, first, last, call)                                               \
    {id, code, first, last,                                                                        \
     [](CCmdTarget* target, [[maybe_unused]] const MSG& message) -> LRESULT {                      \
         /* NOLINTNEXTLINE(cppcoreguidelines-pro-type-static-cast-downcast) */                    \
         auto* const self = static_cast<ThisClass*>(target);                                       \
         call                                                                                      \
     }},

/// void handler(): a command from a menu, or a control's click.
#define ON_COMMAND(id, memberFxn) ON_CONTROL(0, id, memberFxn)
/// void handler(): notification `wNotifyCode` of the control `id`.
#define ON_CONTROL(wNotifyCode, id, memberFxn)                                                     \
    AFX_MESSAGE_ROW(WM_COMMAND, static_cast<WORD>(wNotifyCode), static_cast<WORD>(id),             \
                    static_cast<WORD>(id), (self->*memberFxn)(); return 0;)
#define ON_BN_CLICKED(id, memberFxn) ON_CONTROL(BN_CLICKED, id, memberFxn)
#define ON_CBN_SELCHANGE(id, memberFxn) ON_CONTROL(CBN_SELCHANGE, id, memberFxn)
#define ON_STN_CLICKED(id, memberFxn) ON_CONTROL(STN_CLICKED, id, memberFxn)

/// LRESULT handler(WPARAM, LPARAM): any message, private ones for example.
#define ON_MESSAGE(message_, memberFxn)                                                            \
    AFX_MESSAGE_ROW(message_, 0, 0, 0, return (self->*memberFxn)(message.wParam, message.lParam);)

/// void OnPaint()
#define ON_WM_PAINT() AFX_MESSAGE_ROW(WM_PAINT, 0, 0, 0, self->OnPaint(); return 0;)
/// void OnTimer(UINT_PTR nIDEvent)
#define ON_WM_TIMER() AFX_MESSAGE_ROW(WM_TIMER, 0, 0, 0, self->OnTimer(message.wParam); return 0;)
/// HCURSOR OnQueryDragIcon()
#define ON_WM_QUERYDRAGICON()                                                                      \
    AFX_MESSAGE_ROW(WM_QUERYDRAGICON, 0, 0, 0,                                                     \
                    return reinterpret_cast<LRESULT>(self->OnQueryDragIcon());)
/// void OnHScroll(UINT nSBCode, UINT nPos, CScrollBar* pScrollBar)
#define ON_WM_HSCROLL()                                                                            \
    AFX_MESSAGE_ROW(WM_HSCROLL, 0, 0, 0,                                                           \
                    self->OnHScroll(LOWORD(message.wParam), HIWORD(message.wParam),                \
                                    afx::scrollBarOf(message));                                    \
                    return 0;)
/// HBRUSH OnCtlColor(CDC* pDC, CWnd* pWnd, UINT nCtlColor)
#define ON_WM_CTLCOLOR()                                                                           \
    AFX_MESSAGE_ROW(afx::CTLCOLOR_MESSAGE, 0, 0, 0, const afx::ColorRequest request(message);      \
                    return reinterpret_cast<LRESULT>(                                              \
                        self->OnCtlColor(request.dc(), request.control(), request.type()));)
/// void OnClose()
#define ON_WM_CLOSE() AFX_MESSAGE_ROW(WM_CLOSE, 0, 0, 0, self->OnClose(); return 0;)
// clang-format on
