#include <study/FileLock.h>

#include <mrl/System.h>

#include <windows.h>

namespace study {

FileLock::FileLock(const std::string& path) : m_path(path + ".lock") {
    constexpr DWORD NOT_SHARED = 0;
    const HANDLE file = CreateFileW(mrl::System::path(m_path).c_str(), GENERIC_WRITE, NOT_SHARED,
                                    nullptr, CREATE_ALWAYS, FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file != INVALID_HANDLE_VALUE) { // ERROR_SHARING_VIOLATION: another process has it
        m_handle = reinterpret_cast<std::intptr_t>(file);
    }
}

FileLock::~FileLock() {
    if (isHeld()) {
        CloseHandle(reinterpret_cast<HANDLE>(m_handle));
    }
}

} // namespace study
