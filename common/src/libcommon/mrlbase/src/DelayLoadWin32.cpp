// Where the first call of a function leads whose DLL is not loaded with the program
// (mrlr_delay_import()). Ours in place of the compiler's, so that the DLL comes from the system
// directory and from nowhere else.
#include <mrl/SystemLibrary.h>

#include <windows.h>

// After windows.h.
#include <delayimp.h>

extern "C" FARPROC WINAPI __delayLoadHelper2(PCImgDelayDescr descriptor, FARPROC* slot);

extern "C" {
extern const IMAGE_DOS_HEADER __ImageBase;
}

namespace {

constexpr DWORD SEVERITY_OF_FAILURES = 0xC0000000;

template <typename T>
T* inImage(RVA address) {
    return reinterpret_cast<T*>(reinterpret_cast<std::uintptr_t>(&__ImageBase) + address);
}

// Without what it is made of the program can no more go on than it could have started. The code is
// the one that the systems' own loaders of this kind raise, so that their tools name the reason.
[[noreturn]] void fail(DWORD error) {
    RaiseException(SEVERITY_OF_FAILURES | FACILITY_VISUALCPP << 16 | error,
                   EXCEPTION_NONCONTINUABLE, 0, nullptr);
    TerminateProcess(GetCurrentProcess(), error);
    __builtin_unreachable();
}

} // namespace

// Looks up every function of the DLL at once, for that costs less than asking function by function
// and leaves no first call to be made later, in the middle of something. Any thread: two of them
// write the same addresses.
FARPROC WINAPI __delayLoadHelper2(PCImgDelayDescr descriptor, FARPROC* slot) {
    const auto* const dll = inImage<const char>(descriptor->rvaDLLName);
    const mrl::CharString name(dll, dll + lstrlenA(dll));
    const mrl::SystemLibrary library(name.c_str());
    if (!library.loaded()) {
        fail(library.error());
    }
    FARPROC wanted = nullptr;
    auto* const addresses = inImage<FARPROC>(descriptor->rvaIAT);
    const auto* const names = inImage<const IMAGE_THUNK_DATA>(descriptor->rvaINT);
    for (std::size_t i = 0; names[i].u1.AddressOfData != 0; ++i) {
        const auto* const function =
            inImage<const IMAGE_IMPORT_BY_NAME>(static_cast<RVA>(names[i].u1.AddressOfData));
        // ERROR_PROC_NOT_FOUND: an older system, which is no harm until the function is called
        const auto found = reinterpret_cast<FARPROC>(
            library.find<void()>(static_cast<const char*>(function->Name)));
        if (found != nullptr) {
            addresses[i] = found;
        }
        if (&addresses[i] == slot) {
            wanted = found;
        }
    }
    if (wanted == nullptr) {
        fail(ERROR_PROC_NOT_FOUND);
    }
    return wanted;
}
