#include <networkadapters/NetworkAdapters.h>

#include <utility>

namespace networkadapters {

namespace {

ScopedAdapters::Source& replacement() {
    static ScopedAdapters::Source source;
    return source;
}

} // namespace

std::vector<NetworkAdapter> networkAdapters() {
    return replacement() ? replacement()() : systemNetworkAdapters();
}

ScopedAdapters::ScopedAdapters(Source source) {
    replacement() = std::move(source);
}

ScopedAdapters::~ScopedAdapters() {
    replacement() = nullptr;
}

} // namespace networkadapters
