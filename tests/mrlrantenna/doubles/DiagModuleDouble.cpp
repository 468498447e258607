#include "DiagModuleDouble.h"

#include <afxwin.h>

#include <tesk5/DiagModule.h>

#include <support/Journal.h>

#include <deque>

// Takes the place of the framework's own file of the same operations when the program is linked.
namespace tesk5 {

namespace {

void note(std::string entry) {
    doubles::journal().push_back(std::move(entry));
}

template <typename Object>
std::deque<Object>& made() {
    static std::deque<Object> objects;
    return objects;
}

} // namespace

Test* DiagModule::createTest(const TeskString& name, const DeviceCapability& capability,
                             Test::Function function) {
    note("test " + name.utf8());
    return &made<Test>().emplace_back(name, capability, function);
}

Parameter* DiagModule::createParameter(const TeskString& name, const DataType& type,
                                       const TeskString& defaultValue, bool multiValued,
                                       bool optional) {
    note("parameter " + name.utf8());
    return &made<Parameter>().emplace_back(name, type, defaultValue, multiValued, optional);
}

Event* DiagModule::createEvent(const TeskString& key) {
    note("event " + key.utf8());
    return &made<Event>().emplace_back(key);
}

LocalizedString* DiagModule::createLocalizedString(const TeskString& key) {
    note("text " + key.utf8());
    return &made<LocalizedString>().emplace_back(
        key, [](const TeskString& itself) -> const TeskString& { return itself; });
}

void DiagModule::setCmdLineArgs(int argc, const char** argv) {
    std::string entry = "setCmdLineArgs " + std::to_string(argc);
    for (int i = 0; i < argc; ++i) {
        entry += std::string(" ") + argv[i];
    }
    note(entry);
}

void DiagModule::setVersion(unsigned major, unsigned minor, const TeskString& build) {
    note("setVersion " + std::to_string(major) + " " + std::to_string(minor) + " " + build.utf8());
    if (doubles::onSetVersion) {
        doubles::onSetVersion();
    }
}

void DiagModule::setModuleInitCallback(void (*callback)()) {
    note("setModuleInitCallback");
    callback();
}

int DiagModule::start() {
    note("start");
    return doubles::onStart ? doubles::onStart() : 0;
}

void DiagModule::warning(Event* event, const TeskString& /*sourceFile*/, int /*line*/) {
    note("warning " + event->key().utf8());
    test::Journal::note("event warning " + event->key().utf8());
}

void DiagModule::error(Event* event, const TeskString& /*sourceFile*/, int /*line*/) {
    note("error " + event->key().utf8());
    test::Journal::note("event error " + event->key().utf8());
}

// The framework's signatures: it takes what it keeps.
void DiagModule::measured(Measurement /*measurement*/) {} // NOLINT(performance-*)

void DiagModule::surveyed(Survey /*survey*/) {} // NOLINT(performance-*)

void DiagModule::requestAdvice() {}

void DiagModule::progresses(const TeskString& /*key*/, std::optional<double> /*longestSeconds*/) {}

bool DiagModule::checkForStop() {
    return false;
}

void DiagModule::requestAbort() {}

} // namespace tesk5
