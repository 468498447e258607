#include "Loader.h"

#include <atomic>

namespace nativewifi {

namespace {

Api loadApi() {
    Api table{};
    static_cast<WlanFunctions&>(table) = platformWlanFunctions();
    static_cast<RpcFunctions&>(table) = platformRpcFunctions();
    return table;
}

constinit std::atomic<const Api*> g_replacement{nullptr};

} // namespace

const Api& api() {
    if (const Api* replacement = g_replacement.load(std::memory_order_acquire)) {
        return *replacement;
    }
    static const Api system = loadApi();
    return system;
}

ScopedApi::ScopedApi(const Api& table) : m_previous(g_replacement.exchange(&table)) {}

ScopedApi::~ScopedApi() {
    g_replacement.store(m_previous);
}

} // namespace nativewifi
