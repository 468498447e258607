// Windows has no public way to read the chains, and the numbers of the Linux opcodes belong to the
// vendors of adapters there: nothing is asked.
#include <readings/ChainSource.h>

namespace readings {

bool ChainSource::isKnownToSystem() {
    return false;
}

ChainLevels ChainSource::levelsOf(const Reading& /*reading*/) {
    return {};
}

std::optional<ULONG> ChainSource::antennas() {
    return std::nullopt;
}

} // namespace readings
