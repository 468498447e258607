// Counts every byte that the program allocates with new, separately for the module and for the
// simulated radio, so that blocks of the one cannot hide a leak of the other.
#pragma once

#include <nativewifi/Api.h>

#include <cstddef>

namespace test {

enum class Owner : unsigned char { MODULE, RADIO };

/// Bytes and blocks that are allocated now. Any thread.
struct HeapUse {
    long long bytes = 0;
    long long blocks = 0;

    friend bool operator==(const HeapUse&, const HeapUse&) = default;
};
HeapUse heapUse(Owner owner);

/// While it lives, allocations of this thread count for `owner`. Without one, those of any thread
/// count for the radio.
class AllocatesFor {
public:
    explicit AllocatesFor(Owner owner);
    AllocatesFor(const AllocatesFor&) = delete;
    AllocatesFor& operator=(const AllocatesFor&) = delete;
    ~AllocatesFor();

private:
    Owner m_before;
};

/// While it lives, allocations of this thread count for the module, except in the functions of the
/// Native Wifi table that is in use.
class SeparateAccounts {
public:
    SeparateAccounts();

private:
    AllocatesFor m_module{Owner::MODULE};
    nativewifi::Api m_table;
    nativewifi::ScopedApi m_scope;
};

} // namespace test
