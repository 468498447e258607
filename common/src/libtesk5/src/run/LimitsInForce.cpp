#include "run/LimitsInForce.h"

#include "run/Runner.h"

#include <tesk5/ModuleInfo.h>

#include <mrl/Sha256.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <string_view>

namespace tesk5 {

namespace {

using Source = InForce::Source;

Source sourceOf(const std::vector<std::string>& parameters, const std::vector<Setting>& settings) {
    Source source = Source::standard;
    for (const Setting& setting : settings) {
        const bool counts =
            std::any_of(parameters.begin(), parameters.end(), [&setting](const std::string& name) {
                return mrl::equalNoCase(setting.name.mrlString().view(), mrl::toUtf16(name));
            });
        if (counts && source != Source::commandLine) {
            source = setting.fromFile ? Source::file : Source::commandLine;
        }
    }
    return source;
}

// The value of the test's parameter; empty without that parameter or a value.
std::string valueOf(const char* name, const std::vector<ParameterInForce>& parameters) {
    for (const ParameterInForce& parameter : parameters) {
        if (name != nullptr && parameter.name == name && parameter.isSet) {
            return parameter.value.valueString().utf8();
        }
    }
    return {};
}

// "NAME VERSION SHA256" taken apart.
InForce namedLimits(const std::string& text) {
    const std::size_t digest = text.rfind(' ');
    const std::size_t version = text.rfind(' ', digest - 1);
    return {.name = text.substr(0, version),
            .version = text.substr(version + 1, digest - version - 1),
            .sha256 = text.substr(digest + 1),
            .source = Source::standard};
}

bool isLimit(const TeskString& name) {
    const auto names = moduleInfo().limitParameters;
    return std::any_of(names.begin(), names.end(),
                       [&name](const char* limit) { return name == limit; });
}

} // namespace

std::vector<InForce> limitsInForce(const std::vector<const Test*>& tests,
                                   const std::vector<Setting>& settings) {
    std::vector<InForce> all;
    for (const Test* test : tests) {
        const std::vector<ParameterInForce> parameters = parametersInForce(*test);
        std::vector<std::string> names;
        std::string text;
        for (const ParameterInForce& parameter : parameters) {
            if (isLimit(parameter.name) && parameter.isSet) {
                names.push_back(parameter.name.utf8());
                text += names.back() + "=" + parameter.value.valueString().utf8() + "\n";
            }
        }
        if (names.empty()) {
            continue;
        }
        const std::string name = valueOf(moduleInfo().limitsName, parameters);
        InForce limits = name.empty() ? InForce{.name = test->name().utf8(),
                                                .version = {},
                                                .sha256 = mrl::sha256Of(text),
                                                .source = Source::standard}
                                      : namedLimits(name);
        limits.source = sourceOf(names, settings);
        all.push_back(std::move(limits));
    }
    return all;
}

std::optional<InForce> calibrationInForce(const std::vector<const Test*>& tests,
                                          const std::vector<Setting>& settings) {
    const char* const parameter = moduleInfo().calibrationFile;
    for (const Test* test : tests) {
        const std::string file = valueOf(parameter, parametersInForce(*test));
        if (!file.empty()) {
            InForce calibration = moduleInfo().calibration(file);
            calibration.source = sourceOf({parameter}, settings);
            return calibration;
        }
    }
    return std::nullopt;
}

} // namespace tesk5
