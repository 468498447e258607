// The process's arguments in the form of a plain main(): a count and UTF-8 texts.
#pragma once

#include <afxwin.h>
#include <mrl/String.h>

#include <string>
#include <vector>

namespace libUikit {

/// Collects what CWinApp::ParseCommandLine() hands out, each argument exactly as it was typed: the
/// leading '-' or '/' that MFC takes off is put back.
class CommandLineParser : public CCommandLineInfo {
public:
    /// \param moduleName becomes argv()[0]
    explicit CommandLineParser(const mrl::String& moduleName);

    /// Takes the next argument. The text comes from the process's own command line at the same
    /// position, when that agrees with what is passed; otherwise a flag gets a '-'.
    /// Failure: throws std::bad_alloc when memory runs out.
    void ParseParam(const TCHAR* pszParam, BOOL bFlag, BOOL bLast) override;

    /// Number of arguments, the module's name included: 1 before any is parsed.
    int argc() const;
    /// argc() texts in UTF-8 and a null pointer; a surrogate without its partner shows as U+FFFD.
    /// Valid until the next ParseParam() or the end of this object.
    const char** argv();

private:
    std::vector<std::wstring> m_typed;
    std::vector<std::string> m_arguments;
    std::vector<const char*> m_pointers;
};

} // namespace libUikit
