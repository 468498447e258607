#include "Loader.h"

namespace nativewifi {

namespace {

struct Library {
    HMODULE module;
    DWORD error;
};

Library loadLibrary() {
    // Only from the system directory: a Wlanapi.dll planted beside the program or in the current
    // directory must never run. Kept until the process ends; notification threads run inside it.
    const HMODULE module = LoadLibraryExW(L"Wlanapi.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return {module, module == nullptr ? GetLastError() : ERROR_SUCCESS};
}

// The RPC runtime's own types for texts and GUIDs differ in name only.
RPC_STATUS WINAPI uuidFromString(const mrl::Char* text, GUID* guid) {
    return UuidFromStringW(reinterpret_cast<RPC_WSTR>(const_cast<mrl::Char*>(text)), guid);
}

RPC_STATUS WINAPI uuidToString(const GUID* guid, mrl::Char** text) {
    return UuidToStringW(const_cast<GUID*>(guid), reinterpret_cast<RPC_WSTR*>(text));
}

RPC_STATUS WINAPI rpcStringFree(mrl::Char** text) {
    return RpcStringFreeW(reinterpret_cast<RPC_WSTR*>(text));
}

} // namespace

AnyFunction findWlanFunction(const char* name, DWORD& error) {
    static const Library library = loadLibrary();
    if (library.module == nullptr) {
        error = library.error;
        return nullptr;
    }
    const FARPROC found = GetProcAddress(library.module, name);
    if (found == nullptr) {
        error = GetLastError();
    }
    return reinterpret_cast<AnyFunction>(found);
}

const RpcFunctions& platformRpcFunctions() {
    static constexpr RpcFunctions functions{&uuidFromString, &uuidToString, &rpcStringFree};
    return functions;
}

} // namespace nativewifi
