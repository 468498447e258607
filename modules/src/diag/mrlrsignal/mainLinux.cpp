#include "SignalProgram.h"

int main(int argc, char** argv) {
    return runSignalProgram({argv, argv + argc});
}
