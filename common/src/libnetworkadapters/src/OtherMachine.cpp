#include "OtherMachine.h"

#include <networkadapters/MachineCheck.h>

#include <utility>

namespace networkadapters {

namespace {

std::optional<OtherMachine>& other() {
    static std::optional<OtherMachine> machine;
    return machine;
}

} // namespace

ScopedMachine::ScopedMachine(std::filesystem::path root,
                             std::vector<nativewifi::RadioChannels> radios) {
    other() = {std::move(root), std::move(radios)};
}

ScopedMachine::~ScopedMachine() {
    other().reset();
}

const std::optional<OtherMachine>& otherMachine() {
    return other();
}

} // namespace networkadapters
