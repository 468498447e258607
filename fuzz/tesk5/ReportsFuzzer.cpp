// Every output of a run with arbitrary names. Each is compared with the output of the same run with
// harmless names, from which it may differ in texts alone.
#include <support/CapturedStream.h>
#include <support/Input.h>
#include <support/Require.h>
#include <support/SafeText.h>

#include <console/Console.h>
#include <console/ListOutput.h>
#include <console/LiveLine.h>
#include <reports/EventStream.h>
#include <reports/ReportKinds.h>
#include <reports/ocp/OcpStream.h>
#include <run/LogKeeper.h>
#include <run/Plan.h>

#include <tesk5/Texts.h>

#include <mrl/DisplayWidth.h>
#include <mrl/Json.h>
#include <mrl/LoggerStream.h>
#include <mrl/Unicode.h>

#include <deque>

namespace {

using mrl::Json;
using tesk5::TeskString;
using tesk5::TestResult;

constexpr std::size_t LONGEST_NAME = 40;

TestResult pass(const tesk5::DiagDevice& /*device*/) {
    return TestResult::PASS();
}

const tesk5::Test& test(bool other) {
    static const tesk5::Test signal("Signal", tesk5::DeviceCapability::Wireless(), &pass);
    static const tesk5::Test dialog("Dialog", tesk5::DeviceCapability::Wireless(), &pass);
    return other ? dialog : signal;
}

const TestResult results[] = {
    TestResult::PASS(),        TestResult::WARN(),      TestResult::FAIL(),
    TestResult::CANNOTRUN(),   TestResult::BADPARAMS(), TestResult::INTERNALERROR(),
    TestResult::USERABORTED(), TestResult::COMPLETED(), TestResult::EXITEDABNORMALLY(),
};

// A run as the input describes it. With `harmless` every name that is not empty is "x" instead, so
// that the same input gives two runs that differ in their names alone.
class Run {
public:
    Run(const std::uint8_t* data, std::size_t size, bool harmless)
        : m_input(data, size), m_harmless(harmless) {
        for (auto outcomes = m_input.number(0, 2); outcomes > 0; --outcomes) {
            addOutcome();
        }
        if (m_input.flag()) {
            const TeskString reason(name());
            record.withoutDevice.push_back({&test(true), {reason.utf8()}, advice(reason, false)});
        }
        record.started = record.ended = mrl::Clock::UtcTime();
        record.exitValue = static_cast<int>(m_input.number(0, 8));
        record.leftOut = m_input.number(0, 2);
        record.log.first = {{{}, 1, "module", mrl::escapeControls(name())}};
    }

    std::deque<tesk5::DiagDevice> devices; ///< of the record
    tesk5::RunRecord record;
    std::string lastName; ///< exists in every run

private:
    std::string name() {
        lastName = m_input.bytes(LONGEST_NAME);
        return m_harmless && !lastName.empty() ? "x" : lastName;
    }

    static tesk5::Findings advice(const TeskString& about, bool good) {
        return {{"WEAK", good, {{"Name", about}, {"Strength", mrl::Uint32{3}}}}};
    }

    void addOutcome() {
        const tesk5::Test& chosen = test(m_input.flag());
        const TestResult result = results[m_input.number(0, std::size(results) - 1)];
        const bool started = m_input.number(0, 7) != 1;
        const double seconds = m_input.number(0, 100000) / 1000.0;
        const TeskString device(name());
        const TeskString property(name());
        const TeskString parameter(name());
        const TeskString variable(name());
        const TeskString file(name());
        const TeskString network(name());
        const std::string failure = name(); // the text of an exception may be ill-formed
        const mrl::Uint32 value = m_input.number({0, 100, 101, 0xFFFFFFFF});
        const auto severity = m_input.flag() ? tesk5::Severity::error : tesk5::Severity::warning;
        const bool extra = m_input.flag();
        devices.emplace_back(device, tesk5::DeviceCapability::Wireless(),
                             tesk5::DiagDevice::Properties{{"DeviceSystemName", property}});
        const char* key = extra ? "PLAIN" : "WEAK";
        const tesk5::Event::Variables variables = {{"Name", variable}, {"Strength", value}};
        record.outcomes.push_back(
            {.test = &chosen,
             .device = &devices.back(),
             .result = result,
             .started = started,
             .time = {},
             .seconds = seconds,
             .parameters = {{"SSID", parameter}, {"Limit", value}},
             .events = {{key,
                         severity,
                         tesk5::fillPlaceholders(tesk5::translation(key).utf8(), variables),
                         variables,
                         file.utf8(),
                         245,
                         {}}},
             .measurements = {{"Strength",
                               value,
                               "%",
                               0,
                               100,
                               {{"Warning", 40, tesk5::Severity::warning},
                                {"Failing", 20, tesk5::Severity::error}}}},
             .surveys =
                 {{"Networks", "%", 0, 100, {{network, value, extra}, {parameter, 50, !extra}}}},
             .series = {{.head = {.name = "Level",
                                  .unit = "dBm",
                                  .limits = {{"Failing", -80, severity,
                                              extra ? tesk5::Limit::Kept::AT_MOST
                                                    : tesk5::Limit::Kept::AT_LEAST}},
                                  .median = tesk5::Number(-60)},
                         .points = {{seconds, tesk5::Number(value).negated(), {{"Name", network}}},
                                    {0, -60, {{"Source", variable}}}}}},
             .advice = advice(variable, !extra),
             .failure = failure});
    }

    fuzz::Input m_input;
    bool m_harmless;
};

void checkJson(const std::string& text, const tesk5::RunRecord& run) {
    fuzz::requireNone(test::findUnsafeInLines(text), "the JSON report");
    const Json json = Json::parse(text);
    for (std::size_t i = 0; i < run.outcomes.size(); ++i) {
        const tesk5::Outcome& outcome = run.outcomes[i];
        const Json& result = json["results"][i];
        fuzz::require(result["device"]["name"] == outcome.device->name().utf8(),
                      "a device keeps its name in JSON");
        fuzz::require(result["surveys"][0]["entries"][0]["name"] ==
                          outcome.surveys[0].entries[0].name.utf8(),
                      "a network keeps its name in JSON");
        fuzz::require(result["events"][0]["variables"]["Name"] ==
                          outcome.events[0].variables[0].second.valueString().utf8(),
                      "a variable keeps its value in JSON");
    }
}

void checkReports(const tesk5::RunRecord& run, const tesk5::RunRecord& harmless) {
    for (const tesk5::ReportKind& kind : tesk5::reportKinds()) {
        const std::string text = kind.text(run);
        const std::string_view option = kind.option;
        if (option == "--json") {
            checkJson(text, run);
            continue;
        }
        if (option == "--wsjf" || option == "--openhtf") {
            fuzz::requireNone(test::findUnsafeInLines(text), kind.option);
            fuzz::require(Json::parse(text).is_object(), "a report is an object");
            continue;
        }
        fuzz::requireNone(test::findUnsafeInMarkup(text), kind.option);
        fuzz::require(test::skeletonOf(text) == test::skeletonOf(kind.text(harmless)),
                      std::string("a name is no markup: ") + kind.option);
    }
}

// Sends a listener all events of the run.
void replay(tesk5::RunListener& listener, const tesk5::RunRecord& run) {
    std::vector<tesk5::PlannedRun> plan;
    for (const tesk5::Outcome& outcome : run.outcomes) {
        plan.push_back({outcome.test, outcome.device});
    }
    listener.onRunStart(run, plan);
    for (const tesk5::Outcome& outcome : run.outcomes) {
        const tesk5::PlannedRun planned{outcome.test, outcome.device};
        listener.onTestStart(planned);
        listener.onProgress({"PLAIN", outcome.events[0].text, 3.5});
        listener.onEvent(outcome.events[0]);
        listener.onMeasurement(outcome.measurements[0]);
        listener.onSurvey(outcome.surveys[0]);
        listener.onSeries(outcome.series[0].head);
        listener.onPoint(outcome.series[0].head.name, outcome.series[0].points[0]);
        listener.onTestEnd(outcome);
        listener.onTestBroken(planned, outcome.failure);
    }
    listener.onStopRequest();
    listener.onRunEnd(run);
}

// What a person sees of the run, and of the list of its devices.
std::string consoleOf(const Run& run) {
    const test::CapturedStream output(mrl::cout);
    const test::CapturedStream errors(mrl::cerr);
    tesk5::Console console(tesk5::RunContext::current(), {});
    replay(console, run.record);
    tesk5::showList(mrl::cout, tesk5::Registry::instance(),
                    {{run.devices.begin(), run.devices.end()}, {}}, std::nullopt);
    return output.text() + errors.text();
}

void checkConsole(const Run& run, const Run& harmless) {
    const std::string text = consoleOf(run);
    fuzz::requireNone(test::findUnsafeInLines(text), "the console");
    fuzz::require(test::linesOf(text).size() == test::linesOf(consoleOf(harmless)).size(),
                  "a name does not break a line of the console");
}

void checkObjectsInLines(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) {
        for (const char c : line) {
            fuzz::require(c >= 0x20 && c < 0x7F, "lines for programs are ASCII");
        }
        fuzz::require(Json::parse(line).is_object(), "each line is an object");
    }
}

void checkEvents(const tesk5::RunRecord& run) {
    test::CapturedStream output(mrl::cout);
    tesk5::EventStream events(mrl::cout);
    replay(events, run);
    const std::vector<std::string> lines = test::linesOf(output.text());
    // Start, stop and end of the run, and nine events of each test.
    fuzz::require(lines.size() == 3 + 9 * run.outcomes.size(), "an event is a line");
    checkObjectsInLines(lines);
}

void checkOcp(const tesk5::RunRecord& run, const std::string& name) {
    test::CapturedStream output(mrl::cout);
    tesk5::OcpStream ocp(output, name);
    replay(ocp, run);
    ocp.end(run);
    checkObjectsInLines(test::linesOf(output.text()));
}

// The text between two movements of the cursor fits into the line.
void checkLiveLine(const std::string& name) {
    test::CapturedStream output(mrl::cout);
    constexpr std::size_t COLUMNS = 60;
    tesk5::LiveLine live(mrl::cout, COLUMNS);
    live.begin();
    live.tell(name, 12.0);
    live.end();
    const std::string& text = output.text();
    for (std::size_t place = 0; place < text.size();) {
        const std::size_t end = std::min(text.find('\r', place), text.size());
        std::string piece = text.substr(place, end - place);
        piece.erase(std::find(piece.begin(), piece.end(), '\b'), piece.end());
        fuzz::requireNone(test::findUnsafe(piece), "the live line");
        fuzz::require(mrl::columnsOf(piece) < COLUMNS, "the live line fits");
        place = end + 1;
    }
}

// With a very long line too, because kept lines are cut.
void checkLog(const std::string& name) {
    constexpr std::size_t MANY = 30;
    std::string repeated;
    for (std::size_t i = 0; i < MANY; ++i) {
        repeated += name;
    }
    static mrl::Logger& logger = mrl::LogFactory::createLogger("fuzz");
    const tesk5::LogKeeper keeper;
    mrl::LoggerStream(&logger, 1, 1268) << "SSID: " << name;
    mrl::LoggerStream(&logger, 1, 1268) << repeated;
    const tesk5::KeptLog log = keeper.log();
    fuzz::require(log.first.size() == 2, "each line of the log is kept");
    for (const tesk5::LoggedLine& line : log.first) {
        fuzz::requireNone(test::findUnsafe(line.text), "the log");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    mrl::LogFactory::setPriority(mrl::LogFactory::OFF); // ends the keeping of early lines
    const Run run(data, size, false);
    const Run harmless(data, size, true);
    checkReports(run.record, harmless.record);
    checkConsole(run, harmless);
    checkEvents(run.record);
    checkOcp(run.record, run.lastName);
    checkLiveLine(run.lastName);
    checkLog(run.lastName);
    return 0;
}
