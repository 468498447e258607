#include "HeapAccount.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace test {

namespace {

struct Account {
    std::atomic<long long> bytes = 0;
    std::atomic<long long> blocks = 0;
};
constinit Account g_accounts[2];
thread_local Owner g_owner = Owner::RADIO; // the simulator's threads never set it

// Precedes each block. Its size keeps the block aligned as plain new promises.
struct alignas(__STDCPP_DEFAULT_NEW_ALIGNMENT__) Head {
    std::size_t size;
    Owner owner;
};

Account& accountOf(Owner owner) {
    return g_accounts[static_cast<std::size_t>(owner)];
}

void book(const Head& head, int sign) {
    Account& account = accountOf(head.owner);
    account.bytes += sign * static_cast<long long>(head.size);
    account.blocks += sign;
}

void* allocate(std::size_t size) noexcept {
    void* const memory = std::malloc(sizeof(Head) + size);
    if (memory == nullptr) {
        return nullptr;
    }
    Head* const head = new (memory) Head{size, g_owner};
    book(*head, 1);
    return head + 1;
}

void* allocateOrThrow(std::size_t size) {
    if (void* const memory = allocate(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void release(void* memory) noexcept {
    if (memory != nullptr) {
        Head* const head = static_cast<Head*>(memory) - 1;
        book(*head, -1);
        std::free(head);
    }
}

const nativewifi::Api*& service() {
    static const nativewifi::Api* table = nullptr;
    return table;
}

// Calls a function of the table with allocations counted for the radio.
template <auto member, typename Type = decltype(member)>
struct OnAccount;
template <auto member, typename Table, typename Result, typename... Arguments>
struct OnAccount<member, Result (WINAPI* Table::*)(Arguments...)> {
    static Result WINAPI call(Arguments... arguments) {
        const AllocatesFor account(Owner::RADIO);
        return (service()->*member)(arguments...);
    }
};

nativewifi::Api tableOnAccount() {
    service() = &nativewifi::api();
    nativewifi::Api table{};
#define TEST_ON_ACCOUNT(result, name, arguments, errors)                                           \
    table.name = &OnAccount<&nativewifi::Api::name>::call;
    NATIVEWIFI_WLAN_FUNCTIONS(TEST_ON_ACCOUNT)
    NATIVEWIFI_RPC_FUNCTIONS(TEST_ON_ACCOUNT)
#undef TEST_ON_ACCOUNT
    return table;
}

} // namespace

HeapUse heapUse(Owner owner) {
    const Account& account = accountOf(owner);
    return {account.bytes, account.blocks};
}

AllocatesFor::AllocatesFor(Owner owner) : m_before(g_owner) {
    g_owner = owner;
}
AllocatesFor::~AllocatesFor() {
    g_owner = m_before;
}

SeparateAccounts::SeparateAccounts() : m_table(tableOnAccount()), m_scope(m_table) {}

} // namespace test

// All forms, so that no block is allocated here and freed elsewhere. The aligned forms serve types
// that state plain new's own alignment; a stricter one is refused.
void* operator new(std::size_t size) {
    return test::allocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return test::allocateOrThrow(size);
}
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return test::allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
    return test::allocate(size);
}
void operator delete(void* memory) noexcept {
    test::release(memory);
}
void operator delete[](void* memory) noexcept {
    test::release(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
    test::release(memory);
}
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
    test::release(memory);
}
void operator delete(void* memory, const std::nothrow_t& /*tag*/) noexcept {
    test::release(memory);
}
void operator delete[](void* memory, const std::nothrow_t& /*tag*/) noexcept {
    test::release(memory);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    if (static_cast<std::size_t>(alignment) > __STDCPP_DEFAULT_NEW_ALIGNMENT__) {
        throw std::bad_alloc();
    }
    return test::allocateOrThrow(size);
}
void operator delete(void* memory, std::align_val_t /*alignment*/) noexcept {
    test::release(memory);
}
void operator delete(void* memory, std::size_t /*size*/, std::align_val_t /*alignment*/) noexcept {
    test::release(memory);
}
