// A refresh of the visible-network list: compared with the platform call alone, and with logging to
// a file.
#include "Room.h"

#include <nativewifi/Api.h>
#include <nativewifi/Handles.h>

#include <mrl/Logger.h>

#include <spdlog/sinks/base_sink.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <benchmark/benchmark.h>

#include <filesystem>

namespace {

using bench::Room;

constexpr std::size_t NETWORKS = 64;
constexpr int USUAL_PRIORITY = 1;

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

// A log file that is removed at the end.
class LogFile {
public:
    explicit LogFile(const char* name) : m_path(std::filesystem::temp_directory_path() / name) {
        std::filesystem::remove(m_path);
    }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    ~LogFile() {
        std::error_code ignored;
        std::filesystem::remove(m_path, ignored);
    }
    std::string path() const { return m_path.string(); }

private:
    std::filesystem::path m_path;
};

// While it lives, lines are written to `sink`.
class LoggingTo {
public:
    explicit LoggingTo(std::shared_ptr<mrl::LogSink> sink)
        : m_before(mrl::LogFactory::setSink(std::move(sink))) {
        mrl::LogFactory::setPriority(USUAL_PRIORITY);
    }
    LoggingTo(const LoggingTo&) = delete;
    LoggingTo& operator=(const LoggingTo&) = delete;
    ~LoggingTo() {
        mrl::LogFactory::setPriority(mrl::LogFactory::OFF);
        mrl::LogFactory::setSink(std::move(m_before));
    }

private:
    std::shared_ptr<mrl::LogSink> m_before;
};

void refreshLogged(benchmark::State& state) {
    Room room(NETWORKS);
    const LogFile file("mrlrantenna-benchmark-figure.log");
    const LoggingTo log(mrl::fileLogSink(file.path()));
    measure(state, room, [&room] { room.device().getVisibleNetworkList(); });
}
BENCHMARK(refreshLogged)->Name("refresh_logged/figure")->Unit(benchmark::kMicrosecond);

struct Line {
    int priority;
    std::string logger;
    std::string text;
};

class Collector final : public mrl::LogSink {
public:
    void write(const mrl::LogRecord& record) override {
        m_lines.push_back({record.priority, std::string(record.logger), std::string(record.text)});
    }
    const std::vector<Line>& lines() const { return m_lines; }

private:
    std::vector<Line> m_lines;
};

// The same lines in the same form, each flushed before the next, as the log does so that it is
// complete after a crash.
void libraryAlone(benchmark::State& state) {
    Room room(NETWORKS);
    const auto collector = std::make_shared<Collector>();
    {
        const LoggingTo log(collector);
        room.device().getVisibleNetworkList();
    }
    const LogFile file("mrlrantenna-benchmark-floor.log");
    spdlog::logger logger("floor",
                          std::make_shared<spdlog::sinks::basic_file_sink_mt>(file.path()));
    logger.set_pattern("%Y-%m-%dT%H:%M:%S.%eZ %v", spdlog::pattern_time_type::utc);
    logger.flush_on(spdlog::level::info);
    for ([[maybe_unused]] auto iteration : state) {
        for (const Line& line : collector->lines()) {
            logger.info("{} {}: {}", line.priority, line.logger, line.text);
        }
    }
}
BENCHMARK(libraryAlone)->Name("refresh_logged/floor")->Unit(benchmark::kMicrosecond);

} // namespace
