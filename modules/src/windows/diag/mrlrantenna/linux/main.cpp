#include "MRLrAntennaApp.h"

#include <vector>

int main(int argc, char** argv) {
    std::vector<const char*> arguments(argv, argv + argc);
    return CMRLrAntennaGUIApp::Run(argc, arguments.data());
}
