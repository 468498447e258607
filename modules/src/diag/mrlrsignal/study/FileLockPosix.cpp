#include <study/FileLock.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace study {

namespace {

constexpr mode_t FOR_EVERYONE = 0666; // less the process's mask

bool isStillThere(int file) {
    struct stat status = {};
    return fstat(file, &status) == 0 && status.st_nlink > 0;
}

} // namespace

FileLock::FileLock(const std::string& path) : m_path(path + ".lock") {
    // The process that held the lock before may have removed its file since this one opened it.
    for (;;) {
        const int file = open(m_path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, FOR_EVERYONE);
        if (file < 0) { // EACCES, EROFS, ENOENT, ENOSPC
            return;
        }
        if (flock(file, LOCK_EX | LOCK_NB) != 0) { // EWOULDBLOCK: another process has it
            close(file);
            return;
        }
        if (isStillThere(file)) {
            m_handle = file;
            return;
        }
        close(file);
    }
}

FileLock::~FileLock() {
    if (isHeld()) {
        unlink(m_path.c_str());
        close(static_cast<int>(m_handle));
    }
}

} // namespace study
