#include <tesk5/DiagModule.h>

#include <tesk5/ModuleInfo.h>
#include <tesk5/RunContext.h>
#include <tesk5/TestRecorder.h>
#include <tesk5/Texts.h>

#include "commandline/Program.h"

#include <mrl/System.h>

#include <cstdlib>

namespace tesk5 {

namespace {

// Creates an object in the registry; throws when `known`, the object of that name, exists already.
template <typename Object, typename... Rest>
Object* create(std::deque<Object>& objects, const Object* known, const char* kind,
               const TeskString& name, Rest&&... rest) {
    if (known != nullptr) {
        throw TeskException(
            TeskString(std::string("the ") + kind + " \"" + name.utf8() + "\" exists already"));
    }
    Object& object = objects.emplace_back(name, std::forward<Rest>(rest)...);
    RunContext::current().registry.order.push_back(name);
    return &object;
}

// How the script that starts the module for people says that it did: "closes" when its window
// closes at its end, which is after the module's. Null without that script.
const char* startScript() {
    return std::getenv("MRLR_START_SCRIPT");
}

bool windowCloses() {
    const char* const script = startScript();
    const bool withScript = script != nullptr && std::string_view(script) == "closes";
    return mrl::System::ownsConsole(withScript ? 2 : 1);
}

void raise(const Event* event, Severity severity, const TeskString& sourceFile, int line) {
    if (event == nullptr) {
        throw TeskException("an event was to be raised, but there is none");
    }
    TestRecorder::record(
        RaisedEvent{event->key(), severity,
                    fillPlaceholders(translation(event->key()).utf8(), event->variables()),
                    event->variables(), sourceFile.utf8(), line, mrl::Clock::current().utcNow()});
}

} // namespace

Test* DiagModule::createTest(const TeskString& name, const DeviceCapability& capability,
                             Test::Function function) {
    if (function == nullptr) {
        throw TeskException(TeskString("the test \"" + name.utf8() + "\" has no function"));
    }
    Registry& all = RunContext::current().registry;
    return create(all.tests, all.findTest(name), "test", name, capability, function);
}

Parameter* DiagModule::createParameter(const TeskString& name, const DataType& type,
                                       const TeskString& defaultValue, bool multiValued,
                                       bool optional) {
    Registry& all = RunContext::current().registry;
    return create(all.parameters, all.findParameter(name), "parameter", name, type, defaultValue,
                  multiValued, optional);
}

Event* DiagModule::createEvent(const TeskString& key) {
    Registry& all = RunContext::current().registry;
    return create(all.events, all.findEvent(key), "event", key);
}

LocalizedString* DiagModule::createLocalizedString(const TeskString& key) {
    Registry& all = RunContext::current().registry;
    return create(all.localizedStrings, all.findLocalizedString(key), "localized string", key,
                  &lookUpText);
}

void DiagModule::setCmdLineArgs(int argc, const char** argv) {
    RunContext& context = RunContext::current();
    context.program.clear();
    context.arguments.clear();
    if (argc > 0 && argv[0] != nullptr) {
        const std::u8string name = mrl::System::path(argv[0]).filename().u8string();
        context.program.assign(name.begin(), name.end());
    }
    if (startScript() != nullptr) {
        context.program = moduleInfo().name; // as typed: the script has the module's name
    }
    for (int i = 1; i < argc && argv[i] != nullptr; ++i) {
        context.arguments.emplace_back(argv[i]);
    }
}

void DiagModule::setVersion(unsigned major, unsigned minor, const TeskString& build) {
    RunContext::current().version = {.major = major, .minor = minor, .build = build};
}

void DiagModule::setModuleInitCallback(void (*callback)()) {
    RunContext::current().initialize = callback;
}

int DiagModule::start() {
    mrl::System::surviveClosedPipes();
    RunContext& context = RunContext::current();
    context.windowCloses =
        context.arguments.empty() && context.output.isTerminal() && windowCloses();
    const int value = runProgram(context);
    if (context.windowCloses) {
        mrl::System::waitForLine();
    }
    return value;
}

void DiagModule::warning(Event* event, const TeskString& sourceFile, int line) {
    raise(event, Severity::warning, sourceFile, line);
}

void DiagModule::error(Event* event, const TeskString& sourceFile, int line) {
    raise(event, Severity::error, sourceFile, line);
}

void DiagModule::measured(Measurement measurement) {
    TestRecorder::record(std::move(measurement));
}

void DiagModule::surveyed(Survey survey) {
    TestRecorder::record(std::move(survey));
}

void DiagModule::follows(Series::Head head) {
    TestRecorder::record(std::move(head));
}

void DiagModule::sampled(const TeskString& series, const Number& value, Event::Variables attributes,
                         std::optional<double> seconds) {
    TestRecorder::record(series, value, std::move(attributes), seconds);
}

void DiagModule::requestAdvice() {
    TestRecorder::requestAdvice();
}

void DiagModule::progresses(const TeskString& key, std::optional<double> longestSeconds) {
    TestRecorder::record(Progress{key, translation(key).utf8(), longestSeconds});
}

bool DiagModule::checkForStop() {
    return RunContext::current().stopRequest.raised();
}

void DiagModule::requestAbort() {
    RunContext::current().abortRequested = true;
}

} // namespace tesk5
