// radiosim-check FILE...: says of each scenario whether the simulator takes it, and if not, where
// and why. Exit code 0 when it takes all of them, else 64.
#include <radiosim/Scenario.h>

#include <mrl/Unicode.h>

#include <cstdio>
#include <filesystem>

namespace {

constexpr int WRONG_USAGE = 64;

std::string shown(const std::filesystem::path& file) {
    const std::u8string name = file.u8string();
    return mrl::escapeControls(std::string(name.begin(), name.end()));
}

bool check(const std::filesystem::path& file) {
    try {
        const radiosim::Scenario scenario = radiosim::Scenario::fromFile(file);
        std::printf("%s: good, %zu interface(s)\n", shown(file).c_str(),
                    scenario.interfaces.size());
        return true;
    } catch (const radiosim::ScenarioError& error) {
        std::fprintf(stderr, "%s: %s\n", shown(file).c_str(),
                     mrl::escapeControls(error.what()).c_str());
        return false;
    }
}

} // namespace

#ifdef _WIN32
int wmain(int count, wchar_t** arguments) {
#else
int main(int count, char** arguments) {
#endif
    if (count < 2) {
        std::fputs("usage: radiosim-check FILE...\n", stderr);
        return WRONG_USAGE;
    }
    bool good = true;
    for (int i = 1; i < count; ++i) {
        good = check(arguments[i]) && good;
    }
    return good ? 0 : WRONG_USAGE;
}
