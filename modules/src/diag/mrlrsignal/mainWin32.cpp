#include "SignalProgram.h"

#include <mrl/ProcessArguments.h>
#include <mrl/Unicode.h>

int main() {
    std::vector<std::string> arguments;
    for (const mrl::CharString& argument : mrl::processArguments()) {
        arguments.push_back(mrl::toUtf8(argument));
    }
    return runSignalProgram(arguments);
}
