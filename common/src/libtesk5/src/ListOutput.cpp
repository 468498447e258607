#include "Console.h"

#include "BadInput.h"

namespace tesk5 {

namespace {

void line(const std::string& text) {
    writeLine(mrl::cout, text);
}

std::string described(const Test::PropertyCondition& condition) {
    std::string text = condition.property.utf8();
    if (!condition.value.empty()) {
        text += " = " + condition.value.utf8();
    }
    return text;
}

std::string describedAll(const std::vector<Test::PropertyCondition>& conditions) {
    std::vector<std::string> texts;
    texts.reserve(conditions.size());
    for (const Test::PropertyCondition& condition : conditions) {
        texts.push_back(described(condition));
    }
    return joined(texts, ", ");
}

std::string described(const Parameter& parameter) {
    std::string text = parameter.name().utf8() + " (" + parameter.type().name();
    text += parameter.optional() ? ", optional" : ", required";
    if (parameter.multiValued()) {
        text += ", several values";
    }
    if (!parameter.defaultValue().empty()) {
        text += ", default " + inQuotes(parameter.defaultValue().utf8());
    }
    return text + ")";
}

void showTest(const Test& test) {
    line("  " + test.name().utf8() + (test.interactive() ? " (interactive: runs when named)" : ""));
    line("    capabilities: " + joined(test.capability().names(), ", "));
    if (!test.requirements().empty()) {
        line("    only with:    " + describedAll(test.requirements()));
    }
    if (!test.exclusions().empty()) {
        line("    not with:     " + describedAll(test.exclusions()));
    }
    if (test.enumeratesOnlyOnce()) {
        line("    runs on the first device that suits it");
    }
    for (const Parameter* parameter : test.parameters()) {
        line("    parameter:    " + described(*parameter));
    }
}

void showDevice(const DiagDevice& device) {
    line("  " + device.name().utf8());
    line("    capabilities: " + joined(device.capability().names(), ", "));
    for (const auto& [name, value] : device.properties()) {
        line("    " + name.utf8() + ": " + value.utf8());
    }
}

// Whether the pair would run, in words.
std::string verdictOn(const Test& test, const DiagDevice& device, bool first,
                      const std::optional<std::string>& filter) {
    const std::vector<std::string> reasons = reasonsAgainst(test, device, filter);
    if (!reasons.empty()) {
        return "no: " + joined(reasons, "; ");
    }
    if (test.enumeratesOnlyOnce() && !first) {
        return "no: runs on the first device only";
    }
    return test.interactive() ? "yes, when named" : "yes";
}

void showPairs(const Test& test, const DeviceList& devices,
               const std::optional<std::string>& filter) {
    line("  " + test.name().utf8());
    bool first = true;
    for (const DiagDevice& device : devices.devices) {
        line("    " + device.name().utf8() + ": " + verdictOn(test, device, first, filter));
        first = first && !reasonsAgainst(test, device, filter).empty();
    }
}

} // namespace

void showList(const Registry& registry, const DeviceList& devices,
              const std::optional<std::string>& filter) {
    line("Tests");
    for (const Test& test : registry.tests) {
        showTest(test);
    }
    line("");
    line("Devices");
    for (const DiagDevice& device : devices.devices) {
        showDevice(device);
    }
    if (devices.devices.empty()) {
        line("  none");
    }
    if (!devices.reason.empty()) {
        line("  " + devices.reason);
    }
    if (devices.devices.empty()) {
        return;
    }
    line("");
    line("What would run");
    for (const Test& test : registry.tests) {
        showPairs(test, devices, filter);
    }
}

} // namespace tesk5
