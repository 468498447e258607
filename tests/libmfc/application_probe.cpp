// An application without a main() of its own. Its exit code shows which functions ran.
//   refuse: InitInstance gives FALSE
//   dialog WINDOW: Run opens a dialog for that window of another process; see openDialog()
//   run: Run gives 40 + the number of arguments, or 1 unless the last alone is marked as the last
#include <afxwin.h>

#include "dialog_ids.h"

#include <string>

namespace {

// A dialog for a window of another process. \return 1 when it has no owner, otherwise 0
int openDialog(const std::wstring& window) {
    CWnd parent;
    parent.Attach(reinterpret_cast<HWND>(std::stoull(window)));
    CDialog dialog;
    const bool made = dialog.Create(IDD_TEST, &parent) != FALSE;
    parent.Detach();
    return made && ::GetWindow(dialog, GW_OWNER) == nullptr ? 1 : 0;
}

class Arguments final : public CCommandLineInfo {
public:
    void ParseParam(const TCHAR* text, BOOL flag, BOOL isLast) override {
        ++count;
        marked += isLast ? count : 0;
        first = count == 1 ? std::wstring(text) : first;
        last = text;
        CCommandLineInfo::ParseParam(text, flag, isLast);
    }
    int count = 0;
    int marked = 0; // sum of the numbers of those that are marked as the last
    std::wstring first;
    std::wstring last;
};

class ProbeApplication final : public CWinApp {
public:
    BOOL InitInstance() override {
        ParseCommandLine(m_arguments);
        return m_arguments.first != L"refuse";
    }
    int Run() override {
        if (m_arguments.first == L"dialog") {
            return openDialog(m_arguments.last);
        }
        return m_arguments.marked == m_arguments.count ? 40 + m_arguments.count : 1;
    }
    int ExitInstance() override { return 23; }

private:
    Arguments m_arguments;
};

ProbeApplication theApp;

} // namespace
