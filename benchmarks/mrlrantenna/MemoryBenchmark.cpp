// What refreshes leave behind, in bytes. A program of its own, because it replaces the allocation
// functions.
#include "Room.h"

#include <soak/HeapAccount.h>

#include <benchmark/benchmark.h>

namespace {

using bench::Room;
using test::Owner;

constexpr std::size_t USUAL_ROOM = 64;
constexpr int REFRESHES = 1000;

void memory(benchmark::State& state) {
    Room room(USUAL_ROOM);
    const test::SeparateAccounts accounts;
    room.device().getVisibleNetworkList(); // makes what is made on first use
    const long long before = test::heapUse(Owner::MODULE).bytes;
    for ([[maybe_unused]] auto iteration : state) {
        room.device().getVisibleNetworkList();
        const test::AllocatesFor radio(Owner::RADIO);
        room.forget();
    }
    state.counters["value"] = static_cast<double>(test::heapUse(Owner::MODULE).bytes - before);
}
BENCHMARK(memory)->Name("memory/figure")->Iterations(REFRESHES);

} // namespace
