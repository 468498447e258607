#include "console/ListOutput.h"

#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

#include "texts/Lists.h"
#include "texts/ParameterText.h"

#include <mrl/DisplayWidth.h>

#include <algorithm>

namespace tesk5 {

namespace {

std::string conditionText(const Test::PropertyCondition& condition) {
    std::string text = condition.property.utf8();
    if (!condition.value.empty()) {
        text += " = " + condition.value.utf8();
    }
    return text;
}

std::string described(const Parameter& parameter, const Test& test) {
    std::vector<std::string> details = {parameter.type().name()};
    if (const std::string domain = domainText(parameter); !domain.empty()) {
        details.push_back(domain);
    }
    if (!parameter.optional()) {
        details.push_back(message("LIST_REQUIRED"));
    }
    if (parameter.multiValued()) {
        details.push_back(message("LIST_SEVERAL_VALUES"));
    }
    if (const TeskString& standard = test.defaultOf(parameter); !standard.empty()) {
        details.push_back(defaultText(parameter, standard));
    }
    return message("LIST_PARAMETER_DETAILS",
                   {{"Name", parameter.name()}, {"Details", listed(details)}});
}

constexpr const char* conditionLabels[] = {"LIST_CAPABILITIES", "LIST_ONLY_WITH", "LIST_NOT_WITH",
                                           "LIST_PARAMETER"};

// The values after these labels are aligned.
std::size_t labelColumns() {
    std::size_t widest = 0;
    for (const char* label : conditionLabels) {
        widest = std::max(widest, mrl::columnsOf(message(label)));
    }
    return widest + 1;
}

// Whether the test would run on the device, in words.
std::string verdictOn(const Test& test, const DiagDevice& device, bool first,
                      const std::optional<std::string>& filter) {
    const std::vector<std::string> reasons = reasonsAgainst(test, device, filter);
    if (!reasons.empty()) {
        return message("LIST_NO", {{"Reasons", phrasesListed(reasons)}});
    }
    if (test.enumeratesOnlyOnce() && !first) {
        return message("LIST_NO_LONGER_FIRST");
    }
    return message(test.onlyWhenNamed() ? "LIST_YES_WHEN_NAMED" : "LIST_YES");
}

class ListWriter {
public:
    explicit ListWriter(mrl::OutputStream& stream) : m_stream(stream) {}

    void show(const Registry& registry, const DeviceList& devices,
              const std::optional<std::string>& filter) {
        line(message("LIST_TESTS"));
        for (const Test& test : registry.tests) {
            showTest(test);
        }
        line("");
        line(message("LIST_DEVICES"));
        for (const DiagDevice& device : devices.devices) {
            showDevice(device);
        }
        if (devices.devices.empty()) {
            line("  " + message("LIST_NONE"));
        }
        if (devices.failure) {
            line("  " + message(*devices.failure));
        }
        if (devices.devices.empty()) {
            line("  " + message("DOCTOR_MAY_HELP"));
            return;
        }
        line("");
        line(message("LIST_WHAT_WOULD_RUN"));
        for (const Test& test : registry.tests) {
            showPairs(test, devices, filter);
        }
    }

private:
    void line(const std::string& text) { writeLine(m_stream, text); }

    void condition(const char* label, const std::string& text) {
        line("    " + padded(message(label), labelColumns()) + text);
    }

    void showTest(const Test& test) {
        const std::string& name = test.name().utf8();
        line("  " + (test.interactive() ? message("LIST_INTERACTIVE", {{"Test", name}}) : name));
        if (const TeskString shown = translation(test.name()); shown != test.name()) {
            line("    " + shown.utf8());
        }
        if (test.obstacle() != nullptr) {
            line("    " + message(test.obstacle()));
        }
        condition("LIST_CAPABILITIES", listed(test.capability().names()));
        if (!test.requirements().empty()) {
            condition("LIST_ONLY_WITH", listed(textsOf(test.requirements(), &conditionText)));
        }
        if (!test.exclusions().empty()) {
            condition("LIST_NOT_WITH", listed(textsOf(test.exclusions(), &conditionText)));
        }
        if (test.enumeratesOnlyOnce()) {
            line("    " + message("LIST_ONCE"));
        }
        for (const Parameter* parameter : test.parameters()) {
            condition("LIST_PARAMETER", described(*parameter, test));
            // A module may have a text under the parameter's own name.
            if (const TeskString meaning = translation(parameter->name());
                meaning != parameter->name()) {
                line("    " + padded({}, labelColumns()) + meaning.utf8());
            }
        }
    }

    void showDevice(const DiagDevice& device) {
        line("  " + device.name().utf8());
        line("    " + padded(message("LIST_CAPABILITIES"), 0) +
             listed(device.capability().names()));
        for (const auto& [name, value] : device.properties()) {
            line("    " + nameAndValue(name.utf8(), value.utf8()));
        }
    }

    void showPairs(const Test& test, const DeviceList& devices,
                   const std::optional<std::string>& filter) {
        line("  " + test.name().utf8());
        bool first = true;
        // Devices of another kind, of which a PC has many, are one line together.
        std::vector<std::pair<std::string, std::vector<std::string>>> verdicts;
        for (const DiagDevice& device : devices.devices) {
            const std::string verdict = verdictOn(test, device, first, filter);
            auto same = std::find_if(verdicts.begin(), verdicts.end(),
                                     [&verdict](const auto& row) { return row.first == verdict; });
            if (same == verdicts.end() || device.capability().includes(test.capability())) {
                same = verdicts.insert(verdicts.end(), {verdict, {}});
            }
            same->second.push_back(device.name().utf8());
            first = first && !reasonsAgainst(test, device, filter).empty();
        }
        for (const auto& [verdict, names] : verdicts) {
            line("    " + nameAndValue(listed(names), verdict));
        }
    }

    mrl::OutputStream& m_stream;
};

} // namespace

void showList(mrl::OutputStream& stream, const Registry& registry, const DeviceList& devices,
              const std::optional<std::string>& filter) {
    ListWriter(stream).show(registry, devices, filter);
}

} // namespace tesk5
