// That one process at a time works on a file.
#pragma once

#include <cstdint>
#include <string>

namespace study {

/// Holds "FILE.lock" beside a file, which goes with the process, however that ends.
class FileLock {
public:
    /// \param path of the file that is to be worked on (UTF-8), there or not; its folder is there
    /// Failure: holds nothing, when another process has the file or the folder cannot be written
    /// Platform: open, flock; CreateFileW
    explicit FileLock(const std::string& path);
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock();

    bool isHeld() const { return m_handle != NONE; }

private:
    static constexpr std::intptr_t NONE = -1;

    std::string m_path;            ///< of the lock
    std::intptr_t m_handle = NONE; ///< the system's handle or descriptor
};

} // namespace study
