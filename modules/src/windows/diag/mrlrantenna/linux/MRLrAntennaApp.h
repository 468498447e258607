// The application object on Linux, where the module opens no window.
#pragma once

class CMRLrAntennaGUIApp {
public:
    /// The whole life of the module, with the arguments of main().
    /// \return the process's exit value, as runModule() says it
    static int Run(int argc, const char** argv);
};

extern CMRLrAntennaGUIApp theApp;
