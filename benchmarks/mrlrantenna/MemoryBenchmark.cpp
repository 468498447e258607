// What refreshes allocate, and what they leave behind: counts, not times. A program of its own,
// because it replaces the allocation functions.
#include "RecordBytes.h"
#include "Room.h"

#include <soak/HeapAccount.h>

#include <benchmark/benchmark.h>

namespace {

using bench::Room;
using test::Owner;

constexpr std::size_t USUAL_ROOM = 64;
constexpr int REFRESHES = 1000;

// `refreshes` on the module's account; what is made on first use has been made before.
class Refreshes {
public:
    Refreshes() { m_room.device().getVisibleNetworkList(); }

    void run(benchmark::State& state) {
        for ([[maybe_unused]] auto iteration : state) {
            m_room.device().getVisibleNetworkList();
            const test::AllocatesFor aside(Owner::RADIO);
            m_room.forget();
        }
    }
    const WirelessDevice& device() { return m_room.device(); }

private:
    Room m_room{USUAL_ROOM};
    test::SeparateAccounts m_accounts;
};

void allocations(benchmark::State& state) {
    Refreshes refreshes;
    const long long before = test::allocations(Owner::MODULE);
    refreshes.run(state);
    state.counters["value"] = static_cast<double>(test::allocations(Owner::MODULE) - before) /
                              static_cast<double>(REFRESHES);
}
BENCHMARK(allocations)->Name("allocations/figure")->Iterations(REFRESHES);

// The blocks of a list that grows by doubling, and the texts that lie outside of their records.
void ownBlocks(benchmark::State& state) {
    Refreshes refreshes;
    refreshes.run(state);
    std::size_t blocks = 1;
    for (std::size_t room = 8; room < USUAL_ROOM; room *= 2) {
        ++blocks;
    }
    for (const VisibleNetwork& record : refreshes.device().m_visibleNetworks) {
        blocks += bench::textsOutside(record);
    }
    state.counters["value"] = static_cast<double>(blocks);
}
BENCHMARK(ownBlocks)->Name("allocations/floor")->Iterations(REFRESHES);

void memory(benchmark::State& state) {
    Refreshes refreshes;
    const long long before = test::heapUse(Owner::MODULE).bytes;
    refreshes.run(state);
    state.counters["value"] = static_cast<double>(test::heapUse(Owner::MODULE).bytes - before);
}
BENCHMARK(memory)->Name("memory/figure")->Iterations(REFRESHES);

} // namespace
