// The end of what AfxOleInit() begins.
#pragma once

namespace afx {

/// Ends OLE on its thread when it goes, if AfxOleInit() has started it there.
class OleThread {
public:
    OleThread() = default;
    OleThread(const OleThread&) = delete;
    OleThread& operator=(const OleThread&) = delete;
    ~OleThread();
};

} // namespace afx
