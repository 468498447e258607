#include <mrl/System.h>

#include <cstdlib>

namespace mrl {

std::filesystem::path System::executableFolder() {
    std::error_code failure;
    return std::filesystem::read_symlink("/proc/self/exe", failure).parent_path();
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
