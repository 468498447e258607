// MFC passes whether there was a flag character but not which one; "/tmp/x" and "--json" must both
// arrive whole, so the process's command line is read again.
#include <libUikit/CommandLineParser.h>

#include <mrl/ProcessArguments.h>
#include <mrl/Unicode.h>

namespace libUikit {

namespace {

bool corresponds(std::wstring_view typed, std::wstring_view parameter, bool flag) {
    if (!flag) {
        return typed == parameter;
    }
    return !typed.empty() && (typed[0] == L'-' || typed[0] == L'/') && typed.substr(1) == parameter;
}

} // namespace

CommandLineParser::CommandLineParser(const mrl::String& moduleName)
    : m_typed(mrl::processArguments()), m_arguments{moduleName.getUTF8String().bytes()} {}

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
