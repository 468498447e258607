// Sends one of the process's own streams to a file.
#pragma once

#include <cstdio>
#include <string>

#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace test {

/// While it lives, `stream`, stdout or stderr, is the file `path`, opened in `mode`.
class StreamToFile {
public:
    StreamToFile(std::FILE* stream, const std::string& path, const char* mode = "wb")
        : m_stream(stream) {
        std::fflush(stream);
        m_before = dup(fileno(stream));
        std::FILE* const file = std::fopen(path.c_str(), mode);
        dup2(fileno(file), fileno(stream));
        std::fclose(file);
    }
    StreamToFile(const StreamToFile&) = delete;
    StreamToFile& operator=(const StreamToFile&) = delete;
    ~StreamToFile() {
        std::fflush(m_stream);
        dup2(m_before, fileno(m_stream));
        close(m_before);
    }

private:
    std::FILE* m_stream;
    int m_before;
};

} // namespace test
