// A refresh of the visible-network list, compared with the platform call alone.
#include "Room.h"

#include <nativewifi/Api.h>
#include <nativewifi/Handles.h>

#include <benchmark/benchmark.h>

namespace {

using bench::Room;

constexpr std::size_t NETWORKS = 64;

// Number of refreshes after which the radio's record of calls is cleared.
constexpr int FORGET_EVERY = 64;

// Runs `operation` once an iteration.
template <typename Operation>
void measure(benchmark::State& state, Room& room, Operation operation) {
    int done = 0;
    for ([[maybe_unused]] auto iteration : state) {
        operation();
        if (++done % FORGET_EVERY == 0) {
            state.PauseTiming();
            room.forget();
            state.ResumeTiming();
        }
    }
}

void refresh(benchmark::State& state) {
    Room room(NETWORKS);
    measure(state, room, [&room] { room.device().getVisibleNetworkList(); });
    if (room.device().m_visibleNetworks.size() != NETWORKS) {
        state.SkipWithError("not every network was listed");
    }
}
BENCHMARK(refresh)->Name("refresh/figure")->Unit(benchmark::kMicrosecond);

// The least that a refresh must do: the call itself, and the names copied from its answer.
void callAndNames(benchmark::State& state) {
    Room room(NETWORKS);
    room.device().getVisibleNetworkList(); // opens the handle
    std::vector<UCHAR> names(NETWORKS * DOT11_SSID_MAX_LENGTH);
    measure(state, room, [&room, &names] {
        nativewifi::WlanMemory<WLAN_AVAILABLE_NETWORK_LIST> list;
        if (nativewifi::api().WlanGetAvailableNetworkList(room.device().m_clientHandle,
                                                          &room.device().m_interfaceGuid, 0,
                                                          nullptr, out(list)) != ERROR_SUCCESS) {
            return;
        }
        UCHAR* place = names.data();
        for (DWORD i = 0; i < list->dwNumberOfItems; ++i) {
            const DOT11_SSID& name = list->Network[i].dot11Ssid;
            place = std::copy_n(name.ucSSID, name.uSSIDLength, place);
        }
        benchmark::DoNotOptimize(names.data());
        benchmark::ClobberMemory();
    });
}
BENCHMARK(callAndNames)->Name("refresh/floor")->Unit(benchmark::kMicrosecond);

} // namespace
