#include "SignalProgram.h"

#include <mrl/ProcessArguments.h>
#include <mrl/SystemLibrary.h>
#include <mrl/Unicode.h>

int main() {
    mrl::loadFromSystemDirectoryAlone();
    std::vector<std::string> arguments;
    for (const mrl::CharString& argument : mrl::processArguments()) {
        arguments.push_back(mrl::toUtf8(argument));
    }
    return runSignalProgram(arguments);
}
