#include "run/PcIdentityPosix.h"

#include <mrl/Files.h>

#include <algorithm>
#include <array>
#include <sys/utsname.h>
#include <unistd.h>

namespace tesk5 {

namespace {

// Empty for a file that cannot be read: the serial number only root may read.
std::string textOf(const std::filesystem::path& file) {
    constexpr std::size_t LARGEST = 0x10000;
    try {
        return mrl::readWholeFile(file, LARGEST);
    } catch (const mrl::FileFailure&) {
        return {};
    }
}

// The value of `name` in os-release: a line NAME=value, perhaps in quotation marks.
std::string releaseValue(std::string_view text, std::string_view name) {
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (line.size() > name.size() && line.starts_with(name) && line[name.size()] == '=') {
            line.remove_prefix(name.size() + 1);
            const bool quoted = line.size() > 1 && (line.front() == '"' || line.front() == '\'') &&
                                line.back() == line.front();
            return identityText(quoted ? line.substr(1, line.size() - 2) : line);
        }
    }
    return {};
}

} // namespace

void setFromFiles(const std::filesystem::path& root, PcIdentity& pc) {
    const std::filesystem::path firmware = root / "sys/class/dmi/id";
    pc.maker = identityText(textOf(firmware / "sys_vendor"));
    pc.model = identityText(textOf(firmware / "product_name"));
    pc.serial = identityText(textOf(firmware / "product_serial"));
    pc.system = releaseValue(textOf(root / "etc/os-release"), "PRETTY_NAME");
}

std::optional<PcIdentity> pcIdentity() {
    constexpr std::size_t LONGEST_NAME = 256;
    PcIdentity pc;
    std::array<char, LONGEST_NAME> name{};
    if (gethostname(name.data(), name.size() - 1) == 0) { // ENAMETOOLONG: none
        pc.name = identityText(name.data());
    }
    setFromFiles("/", pc);
    utsname system{};
    if (uname(&system) == 0) {
        pc.build = identityText(system.release);
    }
    return pc.facts().empty() ? std::nullopt : std::optional(pc);
}

} // namespace tesk5
