#include <nativewifi/NetworkAdapters.h>

namespace nativewifi {

std::vector<NetworkAdapter> networkAdapters() {
    return {};
}

} // namespace nativewifi
