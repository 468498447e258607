// The one application object and its life.
#include <afxwin.h>

#include "Ole.h"

#include <mrl/ProcessArguments.h>

#include <filesystem>

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

BOOL CWinApp::InitInstance() {
    return FALSE;
}

int CWinApp::Run() {
    return ExitInstance();
}

int CWinApp::ExitInstance() {
    return 0;
}

HICON CWinApp::LoadIcon(LPCTSTR lpszResourceName) const {
    return ::LoadIconW(GetModuleHandleW(nullptr), lpszResourceName);
}

HICON CWinApp::LoadIcon(UINT nIDResource) const {
    return LoadIcon(MAKEINTRESOURCEW(nIDResource));
}

void CWinApp::ParseCommandLine(CCommandLineInfo& rCmdInfo) {
    const std::vector<mrl::CharString> arguments = mrl::processArguments();
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        const wchar_t* const argument = arguments[i].c_str();
        const bool flag = argument[0] == L'-' || argument[0] == L'/';
        rCmdInfo.ParseParam(flag ? argument + 1 : argument, flag, i + 1 == arguments.size());
    }
}

CWinApp* AFXAPI AfxGetApp() {
    return g_application;
}

int AFXAPI AfxWinMain(HINSTANCE, HINSTANCE, LPTSTR, int) {
    CWinApp* const application = AfxGetApp();
    if (application == nullptr) {
        return -1;
    }
    const int exitCode =
        application->InitInstance() ? application->Run() : application->ExitInstance();
    afx::endOle();
    return exitCode;
}
