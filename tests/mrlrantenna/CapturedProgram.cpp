#include "CapturedProgram.h"

#include <MRLrAntenna.h>
#include <ModuleObjects.h>

#include <support/CapturedStream.h>

#include <tesk5/DiagModule.h>
#include <tesk5/RunContext.h>

#include <mrl/Logger.h>

namespace test {

void PrintTo(const Seen& seen, std::ostream* out) {
    *out << "exit value " << seen.exitValue << "\n--- output\n"
         << seen.output << "--- errors\n"
         << seen.errors << "--- report\n"
         << seen.report << "--- log\n"
         << seen.log;
}

void CapturedProgram::TearDown() {
    for (tesk5::Parameter* parameter :
         {parameters::ssid, parameters::warningSignalStrength, parameters::failingSignalStrength}) {
        parameter->reset();
    }
}

Seen CapturedProgram::start(std::vector<std::string> arguments, bool logged) {
    if (signalStrengthTest->parameters().empty()) {
        initializeModule();
    }
    tesk5::RunContext context(tesk5::Registry::instance());
    const tesk5::RunContext::Scope scope(context);
    tesk5::DiagModule::setVersion(6, 5, "000000001");
    const CapturedStream output(mrl::cout);
    const CapturedStream errors(mrl::cerr);
    const bool reports = arguments.front() == "run" || arguments.front() == "replay";
    if (logged) {
        arguments.insert(arguments.end(), {"--log", file("log.txt"), "--log-level", "1"});
        if (reports) {
            arguments.insert(arguments.end(), {"--json", file("report.json")});
        }
    }
    context.program = "mrlrantenna.k5x";
    context.arguments = std::move(arguments);
    Seen seen;
    seen.exitValue = tesk5::DiagModule::start();
    mrl::LogFactory::setPriority(mrl::LogFactory::OFF);
    mrl::LogFactory::setSink(mrl::standardErrorLogSink()); // closes the log
    seen.output = output.text();
    seen.errors = errors.text();
    for (const auto& [name, text] :
         {std::pair{"report.json", &seen.report}, std::pair{"log.txt", &seen.log}}) {
        *text = bytesOfFile(file(name));
        std::filesystem::remove(mrl::System::path(file(name)));
    }
    return seen;
}

Seen CapturedProgram::capture(const radiosim::Scenario& scenario,
                              std::vector<std::string> arguments) {
    VirtualClock clock;
    radiosim::Engine radio(scenario);
    // Notifications come when they are due, however fast the program gets from call to call.
    radio.onCall([&radio](const radiosim::Call&) { radio.settle(); });
    arguments.insert(arguments.end(), {"--capture", file("c.jsonl")});
    return start(std::move(arguments));
}

Seen CapturedProgram::replay(std::vector<std::string> more) {
    more.insert(more.begin(), {"replay", file("c.jsonl")});
    return start(std::move(more));
}

void CapturedProgram::writeCapture(const std::string& text) const {
    std::ofstream(mrl::System::path(file("c.jsonl")), std::ios::binary) << text;
}

} // namespace test
