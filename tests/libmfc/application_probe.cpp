// An application without a main() of its own. Its exit code shows which functions ran.
//   refuse: InitInstance gives FALSE
//   run: Run gives 40 + the number of arguments, or 1 unless the last alone is marked as the last
#include <afxwin.h>

#include <string>

namespace {

class Arguments final : public CCommandLineInfo {
public:
    void ParseParam(const TCHAR* text, BOOL flag, BOOL last) override {
        ++count;
        marked += last ? count : 0;
        first = count == 1 ? std::wstring(text) : first;
        CCommandLineInfo::ParseParam(text, flag, last);
    }
    int count = 0;
    int marked = 0; // sum of the numbers of those that are marked as the last
    std::wstring first;
};

class ProbeApplication final : public CWinApp {
public:
    BOOL InitInstance() override {
        ParseCommandLine(m_arguments);
        return m_arguments.first != L"refuse";
    }
    int Run() override {
        return m_arguments.marked == m_arguments.count ? 40 + m_arguments.count : 1;
    }
    int ExitInstance() override { return 23; }

private:
    Arguments m_arguments;
};

ProbeApplication theApp;

} // namespace
