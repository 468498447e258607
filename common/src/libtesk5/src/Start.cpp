#include <tesk5/DiagModule.h>

namespace tesk5 {

int DiagModule::start() {
    throw TeskException("the command line is not there yet");
}

} // namespace tesk5
