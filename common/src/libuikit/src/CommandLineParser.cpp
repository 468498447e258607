// MFC tells that there was a flag character but not which one; "/tmp/x" and "--json" must both
// arrive whole, so the process's command line is asked again.
#include <libUikit/CommandLineParser.h>

#include <mrl/Unicode.h>

#include <memory>
#include <shellapi.h>

namespace libUikit {

namespace {

struct LocalFreeDeleter {
    void operator()(LPWSTR* arguments) const { LocalFree(arguments); }
};

std::vector<std::wstring> typedArguments() {
    int count = 0;
    // Null with ERROR_NOT_ENOUGH_MEMORY and the like: then the flag characters are guessed
    const std::unique_ptr<LPWSTR, LocalFreeDeleter> arguments(
        CommandLineToArgvW(GetCommandLineW(), &count));
    if (arguments == nullptr) {
        return {};
    }
    return {arguments.get(), arguments.get() + count};
}

bool corresponds(std::wstring_view typed, std::wstring_view parameter, bool flag) {
    if (!flag) {
        return typed == parameter;
    }
    return !typed.empty() && (typed[0] == L'-' || typed[0] == L'/') && typed.substr(1) == parameter;
}

} // namespace

CommandLineParser::CommandLineParser(const mrl::String& moduleName)
    : m_typed(typedArguments()), m_arguments{moduleName.getUTF8String().bytes()} {}

void CommandLineParser::ParseParam(const TCHAR* pszParam, BOOL bFlag, BOOL) {
    const std::wstring_view parameter(pszParam);
    const bool flag = bFlag != FALSE;
    const std::size_t position = m_arguments.size();
    if (position < m_typed.size() && corresponds(m_typed[position], parameter, flag)) {
        m_arguments.push_back(mrl::toUtf8(m_typed[position]));
    } else {
        m_arguments.push_back((flag ? "-" : "") + mrl::toUtf8(parameter));
    }
}

int CommandLineParser::argc() const {
    return static_cast<int>(m_arguments.size());
}

const char** CommandLineParser::argv() {
    m_pointers.clear();
    for (const std::string& argument : m_arguments) {
        m_pointers.push_back(argument.c_str());
    }
    m_pointers.push_back(nullptr);
    return m_pointers.data();
}

} // namespace libUikit
