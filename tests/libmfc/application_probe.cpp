// An application without a main() of its own. Its exit code tells the road it took.
//   refuse: InitInstance gives FALSE    run: Run gives 40 + the number of arguments
//   windows: Run gives 50 when OLE and a window class waited for the first window and were there
//   with it, else the number of what was wrong
#include <afxdisp.h>
#include <afxwin.h>

#include <objbase.h>
#include <string>

namespace {

class Arguments final : public CCommandLineInfo {
public:
    void ParseParam(const TCHAR* text, BOOL flag, BOOL last) override {
        ++count;
        first = count == 1 ? std::wstring(text) : first;
        CCommandLineInfo::ParseParam(text, flag, last);
    }
    int count = 0;
    std::wstring first;
};

class ProbeApplication final : public CWinApp {
public:
    BOOL InitInstance() override {
        ParseCommandLine(m_arguments);
        return m_arguments.first != L"refuse";
    }
    int Run() override {
        return m_arguments.first == L"windows" ? whatWaitsForWindows() : 40 + m_arguments.count;
    }
    int ExitInstance() override { return m_hInstance == GetModuleHandleW(nullptr) ? 23 : 24; }

private:
    static bool hasDll(LPCWSTR name) { return GetModuleHandleW(name) != nullptr; }

    static int whatWaitsForWindows() {
        const std::wstring windowClass = AfxRegisterWndClass(CS_DBLCLKS);
        if (!AfxOleInit() || hasDll(L"user32.dll") || hasDll(L"ole32.dll")) {
            return 51;
        }
        CWnd window;
        if (!window.CreateEx(0, windowClass.c_str(), L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr)) {
            return 52;
        }
        APTTYPE type{};
        APTTYPEQUALIFIER qualifier{};
        return CoGetApartmentType(&type, &qualifier) == S_OK ? 50 : 53;
    }

    Arguments m_arguments;
};

ProbeApplication theApp;

} // namespace
