// Everything that the module has registered.
#pragma once

#include <tesk5/Event.h>
#include <tesk5/LocalizedString.h>
#include <tesk5/Parameter.h>
#include <tesk5/Test.h>

#include <deque>

namespace tesk5 {

/// Lives in a function-local static, since registration happens during static initialisation; its
/// objects keep their addresses until the process ends.
struct Registry {
    std::deque<Test> tests;
    std::deque<Parameter> parameters;
    std::deque<Event> events;
    std::deque<LocalizedString> localizedStrings;
    /// Every name and key in the order of creation, whatever its kind.
    std::vector<TeskString> order;

    static Registry& instance();

    /// The names of the tests, in the order of their creation.
    std::vector<std::string> testNames() const;

    /// The object of that name or key, or null.
    Test* findTest(const TeskString& name);
    const Test* findTest(const TeskString& name) const;
    Parameter* findParameter(const TeskString& name);
    const Parameter* findParameter(const TeskString& name) const;
    Event* findEvent(const TeskString& key);
    LocalizedString* findLocalizedString(const TeskString& key);
};

} // namespace tesk5
