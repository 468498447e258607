// Firmware tables and patterns of tags: texts of others that the framework takes apart itself.
#include <support/Require.h>

#include <run/PcIdentity.h>
#include <run/Smbios.h>
#include <run/Tags.h>

#include <tesk5/BadInput.h>

#include <mrl/Unicode.h>

namespace {

constexpr std::size_t LONGEST_FACT = 200;

void requireText(const std::string& text, const std::string& what) {
    fuzz::require(text.size() <= LONGEST_FACT, what + " is not too long");
    fuzz::require(mrl::toUtf8(mrl::toUtf16(text)) == text, what + " is UTF-8");
}

// The pattern is what the input has before its first NUL, the value what follows.
void match(std::string_view bytes) {
    const std::size_t end = std::min(bytes.find('\0'), bytes.size());
    const tesk5::Tag tag{.name = "serial",
                         .value = std::string(bytes.substr(std::min(end + 1, bytes.size())))};
    if (tesk5::whyNoTagValue(tag)) {
        return;
    }
    try {
        tesk5::TagPattern("serial", std::string(bytes.substr(0, end))).matches(tag.value);
    } catch (const tesk5::BadInput&) {
        return;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    tesk5::PcIdentity pc;
    tesk5::setFromFirmware(bytes, pc);
    for (const auto& [fact, value] : pc.facts()) {
        requireText(value, fact);
    }
    requireText(tesk5::identityText(bytes), "an identity");
    match(bytes);
    return 0;
}
