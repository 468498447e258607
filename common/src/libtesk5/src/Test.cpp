#include <tesk5/Test.h>

#include <tesk5/TeskException.h>

#include <algorithm>

namespace tesk5 {

namespace {

std::string described(const Test::PropertyCondition& condition) {
    std::string text = "the property \"" + condition.property.utf8() + "\"";
    if (!condition.value.empty()) {
        text += " with the value \"" + condition.value.utf8() + "\"";
    }
    return text;
}

} // namespace

bool Test::PropertyCondition::holdsFor(const DiagDevice& device) const {
    const DeviceProperty found = device.property(property);
    return found.exists() && (value.empty() || found.value() == value);
}

Test::Test(TeskString name, DeviceCapability capability, Function run)
    : m_name(std::move(name)), m_capability(capability), m_function(run) {}

Test* Test::setEnumeratesOnlyOnce(bool once) {
    m_enumeratesOnlyOnce = once;
    return this;
}

Test* Test::setInteractive(bool interactive) {
    m_interactive = interactive;
    return this;
}

Test* Test::addDevicePropertyExclusion(const TeskString& property, const TeskString& value) {
    m_exclusions.push_back({property, value});
    return this;
}

Test* Test::addDevicePropertyRequirement(const TeskString& property, const TeskString& value) {
    m_requirements.push_back({property, value});
    return this;
}

Test* Test::addParameter(const Parameter* parameter) {
    if (parameter == nullptr) {
        throw TeskException(
            TeskString("the test \"" + m_name.utf8() + "\" was given no parameter to add"));
    }
    if (std::find(m_parameters.begin(), m_parameters.end(), parameter) == m_parameters.end()) {
        m_parameters.push_back(parameter);
    }
    return this;
}

std::vector<std::string> Test::reasonsAgainst(const DiagDevice& device) const {
    std::vector<std::string> reasons;
    for (const std::string& name : m_capability.names()) {
        if (!device.capability().includes(*DeviceCapability::fromName(name))) {
            reasons.push_back("lacks the capability \"" + name + "\"");
        }
    }
    for (const PropertyCondition& exclusion : m_exclusions) {
        if (exclusion.holdsFor(device)) {
            reasons.push_back("has " + described(exclusion));
        }
    }
    for (const PropertyCondition& requirement : m_requirements) {
        if (!requirement.holdsFor(device)) {
            reasons.push_back("lacks " + described(requirement));
        }
    }
    return reasons;
}

} // namespace tesk5
