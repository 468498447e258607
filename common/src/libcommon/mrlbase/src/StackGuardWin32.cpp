// What code compiled with -fstack-protector stands on: the value behind each buffer, and the end of
// a program in which it has changed. The compiler's own library asks the system's cryptography for
// that value, and would bring in certificates and windows before anything else has happened.
#include <windows.h>

#include <cstdint>

extern "C" {
std::uintptr_t __stack_chk_guard = 0;
[[noreturn]] void __stack_chk_fail();
}

namespace {

std::uint64_t mixed(std::uint64_t value, std::uint64_t more) {
    value = (value ^ more) + 0x9E3779B97F4A7C15U;
    value = (value ^ (value >> 30)) * 0xBF58476D1CE4E5B9U;
    value = (value ^ (value >> 27)) * 0x94D049BB133111EBU;
    return value ^ (value >> 31);
}

// Runs before the constructors of static objects. What the system's own compiler takes, and the
// process's secret, a random number of the kernel that EncodePointer() lets through.
__attribute__((constructor(101), no_stack_protector)) void chooseGuard() {
    LARGE_INTEGER ticks{};
    QueryPerformanceCounter(&ticks);
    FILETIME now{};
    GetSystemTimePreciseAsFileTime(&now);
    const auto secret = reinterpret_cast<std::uintptr_t>(EncodePointer(nullptr));
    std::uint64_t value = mixed(secret, static_cast<std::uint64_t>(ticks.QuadPart));
    value = mixed(value, std::uint64_t{now.dwHighDateTime} << 32 | now.dwLowDateTime);
    value = mixed(value, std::uint64_t{GetCurrentProcessId()} << 32 | GetCurrentThreadId());
    value = mixed(value, reinterpret_cast<std::uintptr_t>(&ticks));
    value = mixed(value, reinterpret_cast<std::uintptr_t>(&__stack_chk_guard));
    __stack_chk_guard = value;
}

} // namespace

// Nothing that is still in memory can be trusted: the system ends the process, without handlers,
// and notes why.
void __stack_chk_fail() {
    // __fastfail(FAST_FAIL_STACK_COOKIE_CHECK_FAILURE), which the tool chain's headers do not have.
    constexpr unsigned int DAMAGED_STACK = 2;
    __asm__ volatile("int $0x29" : : "c"(DAMAGED_STACK) : "memory");
    __builtin_unreachable();
}
