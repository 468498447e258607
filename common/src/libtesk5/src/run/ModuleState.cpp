#include "run/ModuleState.h"

namespace tesk5 {

ModuleState& ModuleState::instance() {
    static ModuleState state;
    return state;
}

} // namespace tesk5
