#include <mrl/System.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <unistd.h>

namespace mrl {

std::filesystem::path System::executable() {
    std::error_code failure;
    return std::filesystem::read_symlink("/proc/self/exe", failure);
}

std::vector<std::filesystem::path> System::resourceFolders(std::string_view program) {
    const std::filesystem::path folder = executableFolder();
    if (folder.empty()) {
        return {};
    }
    const std::filesystem::path below = std::filesystem::path("share") / program;
    return {folder / below, folder.parent_path() / below};
}

std::string_view System::name() {
    return "linux";
}

std::chrono::minutes System::utcOffset(std::chrono::system_clock::time_point time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local = {};
    return localtime_r(&seconds, &local) == nullptr
               ? std::chrono::minutes(0)
               : std::chrono::floor<std::chrono::minutes>(std::chrono::seconds(local.tm_gmtoff));
}

Uint32 System::processId() {
    return static_cast<Uint32>(getpid());
}

bool System::processRuns(Uint32 id) {
    return kill(static_cast<pid_t>(id), 0) == 0 || errno != ESRCH;
}

void System::surviveClosedPipes() {
    signal(SIGPIPE, SIG_IGN); // SIG_ERR for a signal that cannot be ignored
}

// A terminal stays open after the programs in it.
bool System::ownsConsole(std::size_t /*processes*/) {
    return false;
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
