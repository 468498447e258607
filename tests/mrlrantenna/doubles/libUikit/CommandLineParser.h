// The command line as a test gives it.
#pragma once

#include <afxwin.h>

#include <mrl/String.h>

namespace libUikit {

class CommandLineParser : public CCommandLineInfo {
public:
    explicit CommandLineParser(const mrl::String& moduleName)
        : m_name(moduleName.getUTF8String().bytes()), m_argv{m_name.c_str(), nullptr} {}
    ~CommandLineParser() override { doubles::journal().emplace_back("parser destroyed"); }

    int argc() const {
        doubles::journal().emplace_back("argc");
        return 1;
    }
    const char** argv() {
        doubles::journal().emplace_back("argv");
        return m_argv;
    }

private:
    std::string m_name;
    const char* m_argv[2];
};

} // namespace libUikit
