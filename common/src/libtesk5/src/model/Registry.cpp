#include <tesk5/Registry.h>

namespace tesk5 {

namespace {

template <typename Objects, typename Name>
auto* findIn(Objects& objects, Name name, const TeskString& wanted) {
    decltype(&objects.front()) found = nullptr;
    for (auto& object : objects) {
        if ((object.*name)() == wanted) {
            found = &object;
            break;
        }
    }
    return found;
}

} // namespace

Registry& Registry::instance() {
    // Never destroyed: static objects may use what they registered in their destructors.
    static auto* const registry = new Registry;
    return *registry;
}

std::vector<std::string> Registry::testNames() const {
    std::vector<std::string> names;
    for (const Test& test : tests) {
        names.push_back(test.name().utf8());
    }
    return names;
}

Test* Registry::findTest(const TeskString& name) {
    return findIn(tests, &Test::name, name);
}

const Test* Registry::findTest(const TeskString& name) const {
    return findIn(tests, &Test::name, name);
}

Parameter* Registry::findParameter(const TeskString& name) {
    return findIn(parameters, &Parameter::name, name);
}

const Parameter* Registry::findParameter(const TeskString& name) const {
    return findIn(parameters, &Parameter::name, name);
}

Event* Registry::findEvent(const TeskString& key) {
    return findIn(events, &Event::key, key);
}

LocalizedString* Registry::findLocalizedString(const TeskString& key) {
    return findIn(localizedStrings, &LocalizedString::key, key);
}

} // namespace tesk5
