// An account of every byte that the program allocates with new: what the module holds and what the
// simulated radio holds stand apart, so that nothing of the one hides behind the other.
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
/// How many blocks were ever allocated, those among them that are gone.
long long allocations(Owner owner);

/// While it lives, this thread allocates for `owner`; otherwise every thread does for the radio.
class AllocatesFor {
public:
    explicit AllocatesFor(Owner owner);
    AllocatesFor(const AllocatesFor&) = delete;
    AllocatesFor& operator=(const AllocatesFor&) = delete;
    ~AllocatesFor();

private:
    Owner m_before;
};

/// While it lives, this thread allocates for the module, but in the functions of the table in
/// force.
class SeparateAccounts {
public:
    SeparateAccounts();

private:
    AllocatesFor m_module{Owner::MODULE};
    nativewifi::Api m_table;
    nativewifi::ScopedApi m_scope;
};

} // namespace test
