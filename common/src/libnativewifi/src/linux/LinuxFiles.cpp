#include <nativewifi/LinuxFiles.h>

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <fstream>

namespace nativewifi {

namespace {

constexpr std::size_t LONGEST_LINE = 4096; // the kernel makes no longer file of this kind

} // namespace

// Without a stream, whose locale costs more than the file: radios are looked at ten times a second.
std::string lineOf(const std::filesystem::path& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return {};
    }
    char content[LONGEST_LINE];
    const ssize_t size = read(file, content, sizeof content);
    close(file);
    const std::string_view text(content, static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    return std::string(text.substr(0, text.find('\n')));
}

std::string valueIn(const std::filesystem::path& path, std::string_view label) {
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(label)) {
            return line.substr(label.size());
        }
    }
    return {};
}

std::string linkedName(const std::filesystem::path& link) {
    std::error_code error;
    return std::filesystem::read_symlink(link, error).filename().string();
}

std::optional<std::uint64_t> hexNumber(std::string_view text) {
    text.remove_prefix(text.starts_with("0x") ? 2 : 0);
    std::uint64_t number = 0;
    const char* const behind = text.data() + text.size();
    const auto [end, error] = std::from_chars(text.data(), behind, number, 16);
    return error == std::errc() && end == behind ? std::optional(number) : std::nullopt;
}

std::optional<std::array<std::uint8_t, 6>> hardwareAddress(std::string_view text) {
    constexpr std::size_t STRIDE = 3; // two digits and a colon
    std::array<std::uint8_t, 6> address{};
    if (text.size() != address.size() * STRIDE - 1) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < address.size(); ++i) {
        const char* const digits = text.data() + i * STRIDE;
        const auto [end, error] = std::from_chars(digits, digits + 2, address[i], 16);
        const bool last = i + 1 == address.size();
        if (error != std::errc() || end != digits + 2 || (!last && *end != ':')) {
            return std::nullopt;
        }
    }
    return address;
}

} // namespace nativewifi
