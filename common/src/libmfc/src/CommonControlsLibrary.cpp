// The functions of Comctl32.dll that the project calls, each handed on to the DLL when it is first
// needed. Linked, the DLL would bring its own imports in before the program could say where from.
#include <afxcmn.h>

#include <mrl/SystemLibrary.h>

namespace {

template <typename Function>
Function* inComctl32(const char* name) {
    // Some systems' controls ask for this one by name alone when they first blend; a DLL that is
    // there already is not searched for.
    static const mrl::SystemLibrary blending(L"msimg32.dll");
    static const mrl::SystemLibrary library(L"comctl32.dll");
    return library.find<Function>(name);
}

} // namespace

BOOL WINAPI InitCommonControlsEx(const INITCOMMONCONTROLSEX* classes) {
    static const auto function = inComctl32<decltype(InitCommonControlsEx)>("InitCommonControlsEx");
    return function == nullptr ? FALSE : function(classes);
}
