// A folder for the files of one test, removed with its contents at the end of the test.
#pragma once

#include <mrl/System.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace test {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device random;
        do {
            m_path = std::filesystem::temp_directory_path() / ("mrlr-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(m_path));
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& path() const { return m_path; }
    /// The path of `name` (UTF-8) in the folder, as UTF-8.
    std::string file(std::string_view name) const {
        const std::u8string text = (m_path / mrl::System::path(name)).u8string();
        return {text.begin(), text.end()};
    }

private:
    std::filesystem::path m_path;
};

/// The bytes of the file `path` (UTF-8); empty when it cannot be read.
inline std::string bytesOfFile(std::string_view path) {
    std::ifstream file(mrl::System::path(path), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

} // namespace test
