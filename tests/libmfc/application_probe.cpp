// An application without a main() of its own. Its exit code shows which functions ran.
//   refuse: InitInstance gives FALSE    run: Run gives 40 + the number of arguments
#include <afxwin.h>

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
    int Run() override { return 40 + m_arguments.count; }
    int ExitInstance() override { return 23; }

private:
    Arguments m_arguments;
};

ProbeApplication theApp;

} // namespace
