// Calls a function whose DLL is loaded late, and exits with what came of it.
//   there: 0 when it answered    dll, function: the error in the exception, when one is missing
#include <string_view>
#include <windows.h>

extern "C" {
DWORD WINAPI VerLanguageNameW(DWORD language, LPWSTR text, DWORD size);
void WINAPI VerIsNowhere();
void WINAPI isNowhere();
}

namespace {

constexpr DWORD CODE_OF_FAILURES = 0xC06D0000;
constexpr UINT NO_ANSWER = 200;
constexpr UINT LOADED_BEFORE = 201;
constexpr UINT WENT_ON = 202;

LONG CALLBACK onException(EXCEPTION_POINTERS* exception) {
    const DWORD code = exception->ExceptionRecord->ExceptionCode;
    if ((code & 0xFFFF0000) == CODE_OF_FAILURES) {
        ExitProcess(code & 0xFFFF);
    }
    return EXCEPTION_CONTINUE_SEARCH;
}

} // namespace

int main(int argc, char** argv) {
    const std::string_view what = argc > 1 ? argv[1] : "there";
    AddVectoredExceptionHandler(1, onException);
    if (GetModuleHandleW(L"version.dll") != nullptr) {
        ExitProcess(LOADED_BEFORE);
    }
    if (what == "dll") {
        isNowhere();
    } else if (what == "function") {
        VerIsNowhere();
    } else {
        constexpr DWORD GERMAN = 0x407;
        WCHAR text[100] = {};
        // Twice: through the loader, then past it.
        const DWORD first = VerLanguageNameW(GERMAN, text, 100);
        ExitProcess(first != 0 && VerLanguageNameW(GERMAN, text, 100) == first ? 0 : NO_ANSWER);
    }
    ExitProcess(WENT_ON);
}
