// Checks what mrlrantenna assumes about the Native Wifi interface on this PC, and writes what it
// saw into one file, a line for each check. Each line is on the disk before the next check starts:
// a check that ends the process leaves the lines before it.
#include "Machine.h"

#include <contract/Contract.h>

#include <mrl/Clock.h>
#include <mrl/Files.h>
#include <mrl/OutputStream.h>
#include <mrl/System.h>
#ifdef _WIN32
#include <mrl/ProcessArguments.h>
#include <mrl/Unicode.h>
#endif

#include <CLI/CLI.hpp>

#include <csignal>
#include <sstream>

namespace {

constexpr int FORMAT = 1;
constexpr int ALL_HELD = 0;
constexpr int SOME_BROKEN = 1;
constexpr int WRONG_USAGE = 64;
constexpr int OUTPUT_LOST = 74;
constexpr std::size_t GREATEST_CAPTURE = std::size_t{64} << 20;
constexpr std::size_t GREATEST_TEST_REPORT = std::size_t{16} << 20;

constinit std::atomic<bool> g_interrupted{false};
static_assert(std::atomic<bool>::is_always_lock_free);

extern "C" void onInterrupt(int number) {
    std::signal(number, &onInterrupt); // the runtime library of Windows forgets it at each signal
    g_interrupted = true;
}

void watchInterrupts() {
    std::signal(SIGINT, &onInterrupt);
#ifdef SIGBREAK
    std::signal(SIGBREAK, &onInterrupt);
#endif
}

// What a test program's report says, in one line: how many tests there were, and which failed with
// what message.
mrl::Json summaryOf(const std::string& file) {
    const mrl::Json report =
        mrl::parseJson(mrl::readWholeFile(mrl::System::path(file), GREATEST_TEST_REPORT));
    mrl::Json failed = mrl::Json::array();
    for (const mrl::Json& suite : report.at("testsuites")) {
        for (const mrl::Json& test : suite.at("testsuite")) {
            if (test.contains("failures")) {
                failed.push_back({{"test", test.at("classname").get<std::string>() + '.' +
                                               test.at("name").get<std::string>()},
                                  {"failures", test.at("failures")}});
            }
        }
    }
    return {{"program", mrl::System::path(file).stem().string()},
            {"tests", report.at("tests")},
            {"failed", failed}};
}

class ResultFile {
public:
    explicit ResultFile(const std::string& name) : m_file(mrl::System::path(name)) {}
    void add(const std::string& line) { m_file.write(line + '\n'); }

private:
    mrl::FileToWrite m_file;
};

// The answers of this PC, each line of the capture in a line of the result file.
void addCapture(ResultFile& file, const std::string& temporary) {
    const std::filesystem::path path = mrl::System::path(temporary);
    contract::captureAnswers(path);
    std::istringstream lines(mrl::readWholeFile(path, GREATEST_CAPTURE));
    for (std::string line; std::getline(lines, line);) {
        file.add(R"({"captured":)" + line + '}');
    }
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
}

struct Counts {
    int held = 0;
    int broken = 0;
    int notObservable = 0;

    void add(contract::Verdict verdict) {
        held += verdict == contract::Verdict::HELD ? 1 : 0;
        broken += verdict == contract::Verdict::BROKEN ? 1 : 0;
        notObservable += verdict == contract::Verdict::NOT_OBSERVABLE ? 1 : 0;
    }
};

int check(const contract::Options& options, const std::string& output,
          const std::vector<std::string>& testReports) {
    ResultFile file(output);
    mrl::Json head{{"contract", FORMAT},
                   {"version", CONTRACT_VERSION},
                   {"time", mrl::utcText(mrl::Clock::current().utcNow())},
                   {"scan", options.scan},
                   {"radio", options.radio}};
    head.update(contract::machine());
    file.add(head.dump());
    for (const std::string& report : testReports) {
        try {
            file.add(summaryOf(report).dump());
        } catch (const mrl::FileFailure&) {
            file.add(
                mrl::Json{{"program", report}, {"reason", "the report cannot be read"}}.dump());
        } catch (const std::exception& failure) {
            file.add(mrl::Json{{"program", report}, {"reason", failure.what()}}.dump(
                -1, ' ', false, mrl::Json::error_handler_t::replace));
        }
    }
    Counts counts;
    for (const contract::Check& check : contract::checks()) {
        mrl::cout << check.id << " ..." << mrl::endl;
        const contract::Finding finding = contract::run(check, options, g_interrupted);
        counts.add(finding.verdict);
        file.add(contract::line(check, finding));
        mrl::cout << "  " << contract::word(finding.verdict) << " " << finding.seen.dump()
                  << mrl::endl;
    }
    addCapture(file, output + ".capture");
    mrl::cout << std::to_string(counts.held) << " held, " << std::to_string(counts.broken)
              << " broken, " << std::to_string(counts.notObservable) << " not observable; see "
              << output << mrl::endl;
    return counts.broken == 0 ? ALL_HELD : SOME_BROKEN;
}

std::vector<std::string> arguments([[maybe_unused]] int count, [[maybe_unused]] char** values) {
    std::vector<std::string> list;
#ifdef _WIN32
    for (const mrl::CharString& argument : mrl::processArguments()) {
        list.push_back(mrl::toUtf8(argument));
    }
#else
    list.assign(values, values + count);
#endif
    if (!list.empty()) {
        list.erase(list.begin());
    }
    return {list.rbegin(), list.rend()}; // the parser takes them from the end
}

} // namespace

int main(int count, char** values) {
    contract::Options options;
    std::string output = "contract.jsonl";
    std::vector<std::string> testReports;
    CLI::App app("Checks what mrlrantenna assumes about Windows' Native Wifi interface.\n"
                 "Without --scan and --radio it changes nothing.",
                 "contract");
    app.add_flag("--scan", options.scan, "start scans, as Windows itself does; takes a minute");
    app.add_flag("--radio", options.radio,
                 "switch the radio off and on again; a connection is interrupted");
    app.add_option("--output", output, "the result file")->capture_default_str();
    app.add_option("--tests", testReports, "JSON reports of test programs, for the result file");
    try {
        app.parse(arguments(count, values));
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : WRONG_USAGE;
    }
    watchInterrupts();
    try {
        return check(options, output, testReports);
    } catch (const mrl::FileFailure&) {
        mrl::cerr << "contract: " << output << " cannot be written" << mrl::endl;
        return OUTPUT_LOST;
    }
}
