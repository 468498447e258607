#include <mrl/System.h>

namespace mrl {

std::filesystem::path System::executableFolder() {
    std::error_code failure;
    return std::filesystem::read_symlink("/proc/self/exe", failure).parent_path();
}

} // namespace mrl
