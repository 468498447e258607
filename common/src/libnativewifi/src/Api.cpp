// The Native Wifi functions, found in the system directory's Wlanapi.dll on the first call.
// Looked up by name rather than linked: server editions come without the DLL, and the program must
// still start there to say so.
#include "Loader.h"

#include <atomic>
#include <type_traits>

namespace nativewifi {

namespace {

// Stands for a function that the system does not have.
template <typename Pointer>
struct Missing;
template <typename Result, typename... Arguments>
struct Missing<Result(WINAPI*)(Arguments...)> {
    static Result WINAPI call(Arguments...) {
        if constexpr (!std::is_void_v<Result>) {
            return missingFunctionError();
        }
    }
};

template <typename Pointer>
void fill(Pointer& slot, const char* name) {
    const AnyFunction found = findWlanFunction(name);
    slot = found != nullptr ? reinterpret_cast<Pointer>(found) : &Missing<Pointer>::call;
}

Api loadApi() {
    Api table{};
    static_cast<RpcFunctions&>(table) = platformRpcFunctions();
#define NATIVEWIFI_FILL(result, name, arguments, errors) fill(table.name, #name);
    NATIVEWIFI_WLAN_FUNCTIONS(NATIVEWIFI_FILL)
#undef NATIVEWIFI_FILL
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
