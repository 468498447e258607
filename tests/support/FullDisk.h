// Simulates a full disk through the limit on the size of files. Not on Windows.
#pragma once

#include <csignal>
#include <sys/resource.h>

namespace test {

/// While it lives, no file that this process writes grows beyond `bytes`.
class FullDisk {
public:
    explicit FullDisk(rlim_t bytes) : m_signal(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_signal);
    }

private:
    rlimit m_before{};
    void (*m_signal)(int);
};

} // namespace test
