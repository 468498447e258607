// Records as values: one copied, and all of a room's three times over for the mean of their
// signals.
#include "RecordBytes.h"
#include "Room.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstring>

namespace {

using bench::bytesOf;
using bench::Room;

constexpr std::size_t USUAL_ROOM = 64;
constexpr std::size_t SNAPSHOTS = 3;

// Copies `bytes` bytes once an iteration.
void copies(benchmark::State& state, std::size_t bytes) {
    const std::vector<char> from(bytes, 'x');
    std::vector<char> to(bytes);
    for ([[maybe_unused]] auto iteration : state) {
        std::memcpy(to.data(), from.data(), bytes);
        benchmark::DoNotOptimize(to.data());
        benchmark::ClobberMemory();
    }
}

void recordCopy(benchmark::State& state) {
    Room room(USUAL_ROOM);
    room.device().getVisibleNetworkList();
    const VisibleNetwork& record = room.device().m_visibleNetworks[1];
    for ([[maybe_unused]] auto iteration : state) {
        const VisibleNetwork copy(record);
        benchmark::DoNotOptimize(&copy);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(recordCopy)->Name("record_copy/figure");

void recordBytes(benchmark::State& state) {
    Room room(USUAL_ROOM);
    room.device().getVisibleNetworkList();
    copies(state, bytesOf(room.device().m_visibleNetworks[1]));
}
BENCHMARK(recordBytes)->Name("record_copy/floor");

// The measurement less the three refreshes in it, which are measured by themselves.
void mean(benchmark::State& state) {
    using Time = std::chrono::steady_clock;
    Room room(USUAL_ROOM);
    WirelessDevice& device = room.device();
    device.getVisibleNetworkList();
    const VisibleNetwork wanted = device.m_visibleNetworks[USUAL_ROOM / 2];
    for ([[maybe_unused]] auto iteration : state) {
        const Time::time_point begin = Time::now();
        mrl::Int32 strength = device.getSignalStrength(wanted);
        benchmark::DoNotOptimize(strength);
        const Time::time_point middle = Time::now();
        for (std::size_t i = 0; i < SNAPSHOTS; ++i) {
            device.getVisibleNetworkList();
        }
        const Time::duration refreshes = Time::now() - middle;
        state.SetIterationTime(std::chrono::duration<double>(middle - begin - refreshes).count());
        room.forget();
    }
}
BENCHMARK(mean)->Name("mean/figure")->Unit(benchmark::kMicrosecond)->UseManualTime();

void snapshotBytes(benchmark::State& state) {
    Room room(USUAL_ROOM);
    room.device().getVisibleNetworkList();
    std::size_t bytes = 0;
    for (const VisibleNetwork& record : room.device().m_visibleNetworks) {
        bytes += bytesOf(record);
    }
    copies(state, SNAPSHOTS * bytes);
}
BENCHMARK(snapshotBytes)->Name("mean/floor")->Unit(benchmark::kMicrosecond);

} // namespace
