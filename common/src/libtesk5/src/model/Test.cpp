#include <tesk5/Test.h>

#include <tesk5/TeskException.h>

#include <algorithm>

namespace tesk5 {

namespace {

// The phrase about a condition: `keyWithValue` when it compares the value, else `key`.
Mismatch mismatch(const char* key, const char* keyWithValue,
                  const Test::PropertyCondition& condition) {
    return {condition.value.empty() ? key : keyWithValue,
            {{"Property", condition.property}, {"Value", condition.value}}};
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

Test* Test::setParameterCheck(ParameterCheck check, WrongParameters wrong) {
    m_parameterCheck = check;
    m_wrongParameters = wrong;
    return this;
}

Findings Test::parameterFindings(bool complete) const {
    return m_parameterCheck == nullptr ? Findings() : m_parameterCheck(complete);
}

Test* Test::setDefault(Parameter* parameter, const TeskString& text) {
    if (!parameter->accepts(text)) {
        throw TeskException(TeskString(
            "the test \"" + m_name.utf8() + "\" was given the default \"" + text.utf8() +
            "\", which the parameter \"" + parameter->name().utf8() + "\" does not take"));
    }
    m_defaults.emplace_back(parameter, text);
    return this;
}

Test* Test::setOnlyWhenNamed(bool onlyWhenNamed) {
    m_onlyWhenNamed = onlyWhenNamed;
    return this;
}

const TeskString& Test::defaultOf(const Parameter& parameter) const {
    const auto own = std::find_if(m_defaults.begin(), m_defaults.end(),
                                  [&](const auto& each) { return each.first == &parameter; });
    return own == m_defaults.end() ? parameter.defaultValue() : own->second;
}

Test::OwnDefaults::OwnDefaults(const Test& test) : m_test(test) {
    for (const auto& [parameter, text] : m_test.m_defaults) {
        parameter->setDefaultInForce(text);
    }
}

Test::OwnDefaults::~OwnDefaults() {
    for (const auto& [parameter, text] : m_test.m_defaults) {
        parameter->setDefaultInForce(std::nullopt);
    }
}

Test* Test::setObstacle(const char* reason) {
    m_obstacle = reason;
    return this;
}

std::vector<Mismatch> Test::mismatches(const DiagDevice& device) const {
    if (m_obstacle != nullptr) {
        return {{"LIST_NOT_ON_THIS_SYSTEM", {}}};
    }
    std::vector<Mismatch> reasons;
    for (const std::string& name : m_capability.names()) {
        if (!device.capability().includes(*DeviceCapability::fromName(name))) {
            reasons.push_back({"LIST_LACKS_CAPABILITY", {{"Capability", name}}});
        }
    }
    for (const PropertyCondition& exclusion : m_exclusions) {
        if (exclusion.holdsFor(device)) {
            reasons.push_back(mismatch("LIST_HAS_PROPERTY", "LIST_HAS_VALUE", exclusion));
        }
    }
    for (const PropertyCondition& requirement : m_requirements) {
        if (!requirement.holdsFor(device)) {
            reasons.push_back(mismatch("LIST_LACKS_PROPERTY", "LIST_LACKS_VALUE", requirement));
        }
    }
    return reasons;
}

} // namespace tesk5
