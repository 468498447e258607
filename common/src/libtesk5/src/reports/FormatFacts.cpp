#include "reports/FormatFacts.h"

#include "reports/ReportJson.h"

namespace tesk5 {

std::string tagOr(const RunIdentity& identity, std::string_view tag, const std::string& otherwise) {
    const std::string* const value = identity.tag(tag);
    return value == nullptr ? otherwise : *value;
}

std::string unitSerial(const RunIdentity& identity, const std::string& otherwise) {
    const bool firmwareKnows = identity.pc && !identity.pc->serial.empty();
    return tagOr(identity, "serial", firmwareKnows ? identity.pc->serial : otherwise);
}

std::string stepName(const Outcome& outcome) {
    return outcome.test->name().utf8() + "[" + outcome.device->name().utf8() + "]";
}

Bounds boundsOf(const std::vector<Limit>& limits, Severity severity) {
    Bounds bounds;
    for (const Limit& limit : limits) {
        if (limit.severity != severity) {
            continue;
        }
        if (limit.kept == Limit::Kept::AT_MOST) {
            if (bounds.high == nullptr || limit.value < bounds.high->value) {
                bounds.high = &limit;
            }
        } else if (bounds.low == nullptr || limit.value > bounds.low->value ||
                   (limit.value == bounds.low->value && limit.kept == Limit::Kept::ABOVE)) {
            bounds.low = &limit;
        }
    }
    return bounds;
}

std::string figureName(const Measurement& measurement, const Figure& figure) {
    return measurement.name.utf8() + "." + figure.name.utf8();
}

void addParameters(mrl::Json& json, const Test& test,
                   const std::vector<ParameterInForce>& parameters) {
    for (const ParameterInForce& parameter : parameters) {
        if (!parameter.lacksNumber()) {
            json[test.name().utf8() + "." + parameter.name.utf8()] = jsonOf(parameter.value);
        }
    }
}

std::int64_t millisecondsOf(mrl::Clock::UtcTime time) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

mrl::Clock::UtcTime endOf(const Outcome& outcome) {
    return outcome.time + std::chrono::duration_cast<mrl::Clock::UtcTime::duration>(
                              std::chrono::duration<double>(outcome.seconds));
}

} // namespace tesk5
