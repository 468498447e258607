// The fuzzer's bytes as a file, for code that reads files.
#pragma once

#include <support/TemporaryFolder.h>

#include <cstdint>
#include <string>

namespace fuzz {

/// One file in a temporary folder of this process, overwritten for each input.
class InputFile {
public:
    explicit InputFile(const char* name) : m_path(m_folder.file(name)) {}

    void write(std::string_view bytes) {
        std::ofstream(m_path, std::ios::binary).write(bytes.data(), std::streamsize(bytes.size()));
    }
    const std::string& path() const { return m_path; }
    const std::filesystem::path& folder() const { return m_folder.path(); }

private:
    test::TemporaryFolder m_folder;
    std::string m_path;
};

inline std::string_view viewOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

} // namespace fuzz
