#include <networkadapters/NetworkAdapters.h>

namespace networkadapters {

std::vector<NetworkAdapter> systemNetworkAdapters() {
    return {};
}

} // namespace networkadapters
