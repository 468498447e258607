// The public names of the application classes that the module's frame uses, as doubles that tell a
// test what was called. For systems without Win32; everything is inline and records into one place.
#pragma once

#include <nativewifi/WlanTypes.h> // BOOL, TRUE, FALSE

#include <mrl/Types.h>

#include <functional>
#include <string>
#include <vector>

using UINT = unsigned int;
using HCURSOR = void*;
using HBRUSH = void*;
using HICON = void*;

constexpr UINT CS_VREDRAW = 0x0001;
constexpr UINT CS_HREDRAW = 0x0002;
constexpr UINT CS_DBLCLKS = 0x0008;
constexpr UINT CS_BYTEALIGNWINDOW = 0x2000;

namespace doubles {

/// What the frame did, in order, one entry a call.
inline std::vector<std::string>& journal() {
    static std::vector<std::string> entries;
    return entries;
}

/// What AfxOleInit answers.
inline bool oleStarts = true;

/// What CWinApp::ParseCommandLine does besides being noted.
inline std::function<void()> onParseCommandLine;

} // namespace doubles

class CCommandLineInfo {
public:
    virtual ~CCommandLineInfo() = default;
};

class CWinApp {
public:
    CWinApp() { doubles::journal().emplace_back("application object"); }
    virtual ~CWinApp() = default;
    virtual BOOL InitInstance() { return 1; }
    virtual int Run() { return -1; }
    void ParseCommandLine(CCommandLineInfo& /*info*/) {
        doubles::journal().emplace_back("ParseCommandLine");
        if (doubles::onParseCommandLine) {
            doubles::onParseCommandLine();
        }
    }
};

#define DECLARE_MESSAGE_MAP()
#define BEGIN_MESSAGE_MAP(theClass, baseClass)
#define END_MESSAGE_MAP()

inline int AfxMessageBox(const mrl::Char* text, UINT type = 0, UINT helpId = 0) {
    doubles::journal().push_back("AfxMessageBox " +
                                 std::string(text, text + mrl::CharView(text).size()) + " " +
                                 std::to_string(type) + " " + std::to_string(helpId));
    return 1;
}

inline const mrl::Char* AfxRegisterWndClass(UINT style, HCURSOR cursor = nullptr,
                                            HBRUSH background = nullptr, HICON icon = nullptr) {
    const bool bare = cursor == nullptr && background == nullptr && icon == nullptr;
    doubles::journal().push_back("AfxRegisterWndClass " + std::to_string(style) +
                                 (bare ? " bare" : " dressed"));
    return MRL_TEXT("");
}
