#include <mrl/System.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <unistd.h>

namespace mrl {

std::filesystem::path System::executableFolder() {
    std::error_code failure;
    return std::filesystem::read_symlink("/proc/self/exe", failure).parent_path();
}

Uint32 System::processId() {
    return static_cast<Uint32>(getpid());
}

bool System::processRuns(Uint32 id) {
    return kill(static_cast<pid_t>(id), 0) == 0 || errno != ESRCH;
}

std::vector<std::string> System::interfaceLanguages() {
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            return {value};
        }
    }
    return {};
}

} // namespace mrl
