#include "run/Smbios.h"

#include "run/PcIdentity.h"

#include <algorithm>
#include <utility>

namespace tesk5 {

namespace {

constexpr std::size_t HEADER = 4; // type, length, handle
constexpr unsigned SYSTEM_INFORMATION = 1;
constexpr std::string_view END_OF_STRINGS("\0\0", 2);

unsigned byteAt(std::string_view bytes, std::size_t at) {
    return at < bytes.size() ? static_cast<unsigned char>(bytes[at]) : 0;
}

// The string of that number, from 1; empty for none. `strings` end in a NUL each.
std::string_view stringIn(std::string_view strings, unsigned number) {
    for (; number > 1 && !strings.empty(); --number) {
        strings.remove_prefix(std::min(strings.find('\0'), strings.size() - 1) + 1);
    }
    return number == 0 ? std::string_view() : strings.substr(0, strings.find('\0'));
}

} // namespace

void setFromFirmware(std::string_view structures, PcIdentity& pc) {
    constexpr std::pair<std::size_t, std::string PcIdentity::*> places[] = {
        {4, &PcIdentity::maker}, {5, &PcIdentity::model}, {7, &PcIdentity::serial}};
    while (structures.size() >= HEADER) {
        const std::size_t length = byteAt(structures, 1);
        if (length < HEADER || length > structures.size()) {
            return;
        }
        const std::string_view formatted = structures.substr(0, length);
        const std::string_view rest = structures.substr(length);
        const std::size_t end = rest.find(END_OF_STRINGS);
        if (end == std::string_view::npos) {
            return;
        }
        if (byteAt(formatted, 0) == SYSTEM_INFORMATION) {
            for (const auto& [place, member] : places) {
                pc.*member =
                    identityText(stringIn(rest.substr(0, end + 1), byteAt(formatted, place)));
            }
            return;
        }
        structures = rest.substr(end + END_OF_STRINGS.size());
    }
}

} // namespace tesk5
