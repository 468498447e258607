// The Native Wifi functions, found in the system directory's Wlanapi.dll on the first call.
// Looked up by name rather than linked: server editions come without the DLL, and the program must
// still start there to say so.
#include "Loader.h"

#include <atomic>

namespace nativewifi {

namespace {

// Stands for a function that the system does not have: returns why. One instance a function, so
// that each can have a reason of its own.
template <int function, typename Signature>
struct Missing;

template <int function, typename... Arguments>
struct Missing<function, DWORD(WINAPI*)(Arguments...)> {
    static inline DWORD error = ERROR_PROC_NOT_FOUND;
    static DWORD WINAPI call(Arguments...) { return error; }
};

template <int function, typename... Arguments>
struct Missing<function, void(WINAPI*)(Arguments...)> {
    static inline DWORD error = ERROR_PROC_NOT_FOUND;
    static void WINAPI call(Arguments...) {}
};

enum FunctionIndex : int {
#define NATIVEWIFI_INDEX(result, name, arguments) index_##name,
    NATIVEWIFI_WLAN_FUNCTIONS(NATIVEWIFI_INDEX)
#undef NATIVEWIFI_INDEX
};

template <int function, typename Pointer>
void fill(Pointer& slot, const char* name) {
    DWORD error = ERROR_SUCCESS;
    if (const AnyFunction found = findWlanFunction(name, error)) {
        slot = reinterpret_cast<Pointer>(found);
        return;
    }
    Missing<function, Pointer>::error = error;
    slot = &Missing<function, Pointer>::call;
}

Api loadApi() {
    Api table{};
    static_cast<RpcFunctions&>(table) = platformRpcFunctions();
#define NATIVEWIFI_FILL(result, name, arguments) fill<index_##name>(table.name, #name);
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
