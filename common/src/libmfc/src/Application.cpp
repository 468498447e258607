// The one application object and its life.
#include <afxwin.h>

#include "OleThread.h"
#include "ThreadState.h"

#include <filesystem>
#include <memory>
#include <shellapi.h>

namespace {

// Constant-initialised: application objects register during static initialisation.
constinit CWinApp* g_application = nullptr;

std::wstring executableName() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        // ERROR_INSUFFICIENT_BUFFER, with a result as long as the buffer
        const DWORD length =
            GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return std::filesystem::path(path).stem().wstring();
        }
        path.resize(path.size() * 2);
    }
}

struct LocalFreeDeleter {
    void operator()(LPWSTR* arguments) const { LocalFree(arguments); }
};

} // namespace

CWinApp::CWinApp(LPCTSTR lpszAppName)
    : m_name(lpszAppName != nullptr ? std::wstring(lpszAppName) : executableName()) {
    m_pszAppName = m_name.c_str();
    if (g_application == nullptr) {
        g_application = this;
    }
}

CWinApp::~CWinApp() {
    if (g_application == this) {
        g_application = nullptr;
    }
}

HICON CWinApp::LoadIcon(LPCTSTR lpszResourceName) const {
    return ::LoadIconW(AfxGetResourceHandle(), lpszResourceName);
}

HICON CWinApp::LoadIcon(UINT nIDResource) const {
    return LoadIcon(MAKEINTRESOURCEW(nIDResource));
}

void CWinApp::ParseCommandLine(CCommandLineInfo& rCmdInfo) {
    int count = 0;
    // ERROR_NOT_ENOUGH_MEMORY and the like: then there is nothing to hand out
    const std::unique_ptr<LPWSTR, LocalFreeDeleter> arguments(
        CommandLineToArgvW(GetCommandLineW(), &count));
    if (arguments == nullptr) {
        return;
    }
    for (int i = 1; i < count; ++i) {
        LPCWSTR argument = arguments.get()[i];
        const bool flag = argument[0] == L'-' || argument[0] == L'/';
        rCmdInfo.ParseParam(flag ? argument + 1 : argument, flag, i + 1 == count);
    }
}

CWinApp* AFXAPI AfxGetApp() {
    return g_application;
}

CWinThread* AFXAPI AfxGetThread() {
    return afx::threadState().thread;
}

CWnd* AFXAPI AfxGetMainWnd() {
    const CWinThread* const thread = AfxGetThread();
    return thread == nullptr ? nullptr : thread->m_pMainWnd;
}

HINSTANCE AFXAPI AfxGetInstanceHandle() {
    return GetModuleHandleW(nullptr);
}

HINSTANCE AFXAPI AfxGetResourceHandle() {
    return GetModuleHandleW(nullptr);
}

BOOL AFXAPI AfxWinInit(HINSTANCE hInstance, HINSTANCE, LPTSTR lpCmdLine, int nCmdShow) {
    if (CWinApp* const application = AfxGetApp()) {
        application->m_hInstance = hInstance;
        application->m_lpCmdLine = lpCmdLine;
        application->m_nCmdShow = nCmdShow;
    }
    return TRUE;
}

int AFXAPI AfxWinMain(HINSTANCE hInstance, HINSTANCE hPrevInstance, LPTSTR lpCmdLine,
                      int nCmdShow) {
    CWinApp* const application = AfxGetApp();
    if (application == nullptr || !AfxWinInit(hInstance, hPrevInstance, lpCmdLine, nCmdShow)) {
        return -1;
    }
    const afx::OleThread ole;
    return application->InitInstance() ? application->Run() : application->ExitInstance();
}
