// Writes what a CommandLineParser gives for this process to standard output: each text of argv(),
// ended by a zero byte.
#include <libUikit/CommandLineParser.h>

#include <cstdio>
#include <cstring>

namespace {

class ProbeApplication final : public CWinApp {
public:
    BOOL InitInstance() override { return TRUE; }
    int Run() override {
        libUikit::CommandLineParser parser("probe.k5x");
        ParseCommandLine(parser);
        const char** const argv = parser.argv();
        for (int i = 0; i < parser.argc(); ++i) {
            std::fwrite(argv[i], 1, std::strlen(argv[i]) + 1, stdout);
        }
        return argv[parser.argc()] == nullptr ? 0 : 1;
    }
};

ProbeApplication theApp;

} // namespace
