// The live view and the records on the simulated radio: a terminal in memory, on the virtual clock.
#include "Client.h"
#include "Letter.h"

#include <watch/LevelRecords.h>
#include <watch/LiveView.h>

#include <support/CapturedStream.h>

#include <mrl/Json.h>

#include <gmock/gmock.h>

#include <deque>

namespace watch {
namespace {

using namespace std::chrono_literals;
using radiosim::AccessPoint;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

// What a person does, and when.
struct Step {
    Moment at;
    KeyPress press = {};
    Size size = {}; ///< from then on
};

// Understands what Screen sends. Waiting moves the clock.
class MemoryTerminal final : public Terminal {
public:
    explicit MemoryTerminal(std::deque<Step> steps) : m_steps(std::move(steps)) {}

    Size size() const override { return m_size; }
    void write(std::string_view utf8) override {
        ++m_writes;
        for (std::size_t place = 0; place < utf8.size();) {
            if (utf8.substr(place).starts_with("\x1b[2J")) {
                m_lines.assign(m_size.rows, "");
                place += 4;
                continue;
            }
            // Esc [ row ; 1 H text Esc [ K
            const std::size_t row = place + 2;
            const std::size_t text = utf8.find('H', row) + 1;
            const std::size_t end = utf8.find("\x1b[K", text);
            ASSERT_NE(end, std::string_view::npos) << utf8;
            m_lines.at(std::stoul(std::string(utf8.substr(row))) - 1) =
                utf8.substr(text, end - text);
            place = end + 3;
        }
    }
    KeyPress wait(Moment longest) override {
        mrl::Clock& clock = mrl::Clock::current();
        const Moment until = clock.now() + longest;
        if (m_steps.empty() || m_steps.front().at > until) {
            clock.sleep(longest);
            return {};
        }
        const Step step = m_steps.front();
        m_steps.pop_front();
        clock.sleep(std::max(step.at - clock.now(), Moment::zero()));
        m_size = step.size;
        m_screens.push_back(screen());
        return step.press;
    }
    bool hasEnded() const override { return m_ended; }
    void end() { m_ended = true; }

    std::string screen() const {
        std::string text;
        for (const std::string& line : m_lines) {
            text += line + "\n";
        }
        return text;
    }
    /// As it was before each step.
    const std::vector<std::string>& screens() const { return m_screens; }
    std::size_t writes() const { return m_writes; }

private:
    std::deque<Step> m_steps;
    std::vector<std::string> m_lines;
    std::vector<std::string> m_screens;
    Size m_size;
    std::size_t m_writes = 0;
    bool m_ended = false;
};

AccessPoint accessPoint(const std::string& name, radiosim::Level level, std::uint8_t number) {
    return {.ssid = name,
            .bss = {{{.bssid = {2, 0, 0, 0, 1, number}, .rssi = level, .heardEvery = 100ms}}}};
}

class LiveViews : public radiosim::WithEngine {
protected:
    LiveViews() { show({accessPoint("Lab", -60, 0), accessPoint("Other", -50, 1)}); }

    Ending view(MemoryTerminal& terminal, std::optional<readings::Target> target,
                std::optional<Moment> longest = std::nullopt) {
        const ViewPlan plan{.interfaceGuid = guid(),
                            .adapter = "Adapter",
                            .target = std::move(target),
                            .longest = longest,
                            .colours = false};
        return showLiveView(terminal, plan, [this] {
            engine().settle();
            return m_stop;
        });
    }

    std::string recordsOf(records::Format format, readings::Target target, Moment longest) {
        mrl::OutputStream stream(mrl::OutputStream::Target::standardOutput);
        const test::CapturedStream captured(stream);
        m_over = writeRecords(
            stream,
            {.interfaceGuid = guid(),
             .target = std::move(target),
             .longest = longest,
             .format = format},
            [this](const SourceState& state) { m_sources.push_back(state); },
            [this] {
                engine().settle();
                return m_stop;
            });
        return captured.text();
    }

    bool m_stop = false;
    bool m_over = false;
    std::vector<SourceState> m_sources;
};

TEST_F(LiveViews, ShowTheTargetUntilQuit) {
    MemoryTerminal terminal({{5s, letter('q')}});
    EXPECT_EQ(view(terminal, readings::Target{.ssid = "Lab"}), Ending::QUIT);
    EXPECT_EQ(clock().now(), 5s);
    EXPECT_THAT(terminal.screen(), HasSubstr("-60\u00a0dBm"));
}

TEST_F(LiveViews, EndWithTheInterruptKeyTheTimeTheTerminalAndTheStopRequest) {
    MemoryTerminal interrupted({{1s, {Key::INTERRUPT}}});
    EXPECT_EQ(view(interrupted, readings::Target{.ssid = "Lab"}), Ending::QUIT);
    MemoryTerminal timed({});
    EXPECT_EQ(view(timed, readings::Target{.ssid = "Lab"}, 3s), Ending::OVER);
    EXPECT_EQ(clock().now(), 4s);
    MemoryTerminal gone({});
    gone.end();
    EXPECT_EQ(view(gone, readings::Target{.ssid = "Lab"}), Ending::ENDED_BY_SYSTEM);
    m_stop = true;
    MemoryTerminal stopped({});
    EXPECT_EQ(view(stopped, readings::Target{.ssid = "Lab"}), Ending::ENDED_BY_SYSTEM);
}

TEST_F(LiveViews, GoFromTheListToANetworkAndBack) {
    MemoryTerminal terminal({{2s, {Key::DOWN}},
                             {3s, {Key::ENTER}},
                             {5s, {Key::ESCAPE}},
                             {7s, {Key::ENTER}},
                             {9s, letter('q')}});
    view(terminal, std::nullopt);
    EXPECT_THAT(terminal.screens()[0], HasSubstr(" > Other "));
    EXPECT_THAT(terminal.screens()[1], HasSubstr(" > Lab "));
    EXPECT_THAT(terminal.screens()[2], testing::StartsWith(" Lab  02:00:00:00:01:00"));
    EXPECT_THAT(terminal.screens()[3], HasSubstr(" > Lab "));
    EXPECT_THAT(terminal.screens()[4], testing::StartsWith(" Lab  02:00:00:00:01:00"));
}

TEST_F(LiveViews, SetAndDropTheReferenceAndRestartTheBest) {
    show({accessPoint("Lab", radiosim::Level::Shape{.start = -60, .steps = {{3000ms, 8}}}, 0)});
    MemoryTerminal terminal(
        {{2500ms, letter('r')}, {5s, letter('x')}, {6s, letter('?')}, {7s, letter('q')}});
    view(terminal, readings::Target{.ssid = "Lab"});
    EXPECT_THAT(terminal.screens()[0], Not(HasSubstr("Reference")));
    EXPECT_THAT(terminal.screens()[1], HasSubstr("-60.0\u00a0dBm   now +8.0\u00a0dB"));
    EXPECT_THAT(terminal.screens()[2], Not(HasSubstr("Reference")));
}

TEST_F(LiveViews, FollowTheSizeOfTheTerminalAtOnce) {
    MemoryTerminal terminal({{2s, {}, {.columns = 40, .rows = 5}}, {2010ms, letter('q')}});
    view(terminal, readings::Target{.ssid = "Lab"});
    EXPECT_EQ(std::ranges::count(terminal.screens()[1], '\n'), 5);
}

TEST_F(LiveViews, WriteOnlyWhatHasChanged) {
    start({.interfaces = {{.connection = radiosim::Connection{.ssid = "Lab"},
                           .rssi = -48,
                           .accessPoints = {accessPoint("Lab", -48, 0)}}}});
    MemoryTerminal terminal({{10s, letter('q')}});
    view(terminal, readings::Target{.ssid = "Lab"});
    EXPECT_LE(terminal.writes(), 52U) << "five readings a second";
    EXPECT_EQ(engine().callCount("WlanScan"), 0U);
}

TEST_F(LiveViews, CountTheScansOfAllTargets) {
    MemoryTerminal terminal({{5s, {Key::ENTER}}, {6s, {Key::ESCAPE}}, {7s, letter('q')}});
    view(terminal, std::nullopt);
    // On Linux those of one channel are sent by the other function.
    const std::size_t scans =
        engine().callCount("WlanScan") + engine().callCount("WlanSetInterface");
    EXPECT_THAT(terminal.screen(), HasSubstr("scans sent: " + std::to_string(scans)));
}

TEST_F(LiveViews, SayThatTheRadioIsOffAndGoOnWhenItIsBack) {
    MemoryTerminal terminal({{2s, letter('q')}});
    engine().setRadio(0, 0, 2, std::nullopt);
    view(terminal, readings::Target{.ssid = "Lab"});
    EXPECT_THAT(terminal.screen(), HasSubstr("radio is off"));
    engine().setRadio(0, 0, 1, std::nullopt);
    MemoryTerminal again({{clock().now() + 8s, letter('q')}});
    view(again, readings::Target{.ssid = "Lab"});
    EXPECT_THAT(again.screen(), Not(HasSubstr("radio is off")));
}

TEST_F(LiveViews, LeaveNothingBehind) {
    MemoryTerminal terminal({{2s, {Key::ENTER}}, {4s, letter('q')}});
    view(terminal, std::nullopt);
    EXPECT_EQ(engine().openHandles(), 1U) << "the fixture's own";
    EXPECT_EQ(engine().liveBlocks(), 0U);
}

TEST_F(LiveViews, WriteARecordForEachReading) {
    const std::string text = recordsOf(records::Format::JSONL, {.ssid = "Lab"}, 1s);
    EXPECT_TRUE(m_over);
    const std::string first = text.substr(0, text.find('\n'));
    const mrl::Json record = mrl::parseJson(first);
    EXPECT_EQ(record["time"], "2026-11-20T19:55:01.223Z");
    EXPECT_EQ(record["name"], "Lab");
    EXPECT_EQ(record["nameHex"], "4c6162");
    EXPECT_EQ(record["bssid"], "02:00:00:00:01:00");
    EXPECT_EQ(record["dbm"], -60);
    EXPECT_EQ(record["percent"], 80);
    EXPECT_EQ(record["source"], "scan");
    EXPECT_EQ(record["channel"], 6);
    EXPECT_EQ(record["band"], 2.4);
    EXPECT_EQ(record["mhz"], 2437);
    EXPECT_EQ(record["chains"], mrl::Json::array());
    EXPECT_EQ(std::ranges::count(text, '\n'), 9);
}

TEST_F(LiveViews, WriteRecordsOfEveryNetworkWithoutATarget) {
    const std::string text = recordsOf(records::Format::CSV, {}, 300ms);
    EXPECT_THAT(text, testing::StartsWith("time,name,nameHex,bssid,dbm,percent,source,channel,band,"
                                          "mhz,chains\r\n"));
    EXPECT_THAT(text, HasSubstr("Z,Lab,4c6162,02:00:00:00:01:00,-60,80,scan,6,2.4,2437,\r\n"));
    EXPECT_THAT(text, HasSubstr(",Other,"));
}

TEST_F(LiveViews, RecordFiveReadingsASecondOfAConnection) {
    start({.interfaces = {{.connection = radiosim::Connection{.ssid = "Lab", .links = true},
                           .rssi = -48,
                           .accessPoints = {accessPoint("Lab", -48, 0)}}}});
    const std::string text = recordsOf(records::Format::JSONL, {.ssid = "Lab"}, 2s);
    EXPECT_EQ(std::ranges::count(text, '\n'), 10);
    EXPECT_THAT(text, HasSubstr(R"("source":"link")"));
}

TEST_F(LiveViews, EndRecordsEarlyWhenAsked) {
    m_stop = true;
    EXPECT_EQ(recordsOf(records::Format::JSONL, {}, 10s), "");
    EXPECT_FALSE(m_over);
}

TEST_F(LiveViews, SayOnceWhatKeepsReadingsFromComing) {
    engine().addFault({.function = "WlanScan", .code = ERROR_ACCESS_DENIED});
    recordsOf(records::Format::JSONL, {}, 10s);
    ASSERT_EQ(m_sources.size(), 1U);
    EXPECT_EQ(m_sources[0].scanError, ERROR_ACCESS_DENIED);
}

} // namespace
} // namespace watch
