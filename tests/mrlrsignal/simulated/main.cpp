// mrlrsignal with a simulated radio in the place of this machine's, for tests in a real terminal.
#include "SignalProgram.h"

#include <radiosim/Engine.h>

#include <cstdlib>
#include <iostream>

int main(int argc, char** argv) {
    const char* const scenario = std::getenv("RADIOSIM_SCENARIO");
    try {
        const radiosim::Engine engine(scenario != nullptr ? radiosim::Scenario::fromFile(scenario)
                                                          : radiosim::Scenario::builtIn());
        return runSignalProgram({argv, argv + argc});
    } catch (const radiosim::ScenarioError& error) {
        std::cerr << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
