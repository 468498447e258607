#include <tesk5/RunIdentityJson.h>

#include <algorithm>
#include <iterator>

namespace tesk5 {

namespace {

using mrl::Json;
using Source = InForce::Source;

constexpr const char* IDENTIFIER = "runIdentifier";
constexpr const char* TAGS = "tags";
constexpr const char* PC = "pc";
constexpr const char* ADAPTERS = "adapters";
constexpr const char* LIMITS = "limits";
constexpr const char* CALIBRATION = "calibration";
constexpr const char* VERSION = "version";

using AdapterFact = std::pair<const char*, std::string AdapterIdentity::*>;
constexpr AdapterFact adapterFacts[] = {{"device", &AdapterIdentity::device},
                                        {"driver", &AdapterIdentity::driver},
                                        {"version", &AdapterIdentity::version},
                                        {"address", &AdapterIdentity::address}};

Json jsonOf(const AdapterIdentity& adapter) {
    Json json = Json::object();
    for (const auto& [fact, member] : adapterFacts) {
        if (!(adapter.*member).empty()) {
            json[fact] = adapter.*member;
        }
    }
    return json;
}

AdapterIdentity adapterOf(const Json& json) {
    AdapterIdentity adapter;
    for (const auto& [fact, member] : adapterFacts) {
        adapter.*member = json.value(fact, std::string());
    }
    return adapter;
}

Json jsonOf(const InForce& inForce) {
    Json json = {{"name", inForce.name}};
    if (!inForce.version.empty()) {
        json[VERSION] = inForce.version;
    }
    json["sha256"] = inForce.sha256;
    json["source"] = sourceName(inForce.source);
    return json;
}

InForce inForceOf(const Json& json) {
    constexpr Source sources[] = {Source::file, Source::commandLine, Source::standard};
    const std::string name = json.at("source").get<std::string>();
    const auto* const source =
        std::find_if(std::begin(sources), std::end(sources),
                     [&name](Source known) { return name == sourceName(known); });
    return {.name = json.at("name").get<std::string>(),
            .version = json.value(VERSION, std::string()),
            .sha256 = json.at("sha256").get<std::string>(),
            .source = source == std::end(sources) ? Source::standard : *source};
}

} // namespace

Json identityJson(const RunIdentity& identity) {
    Json json = Json::object();
    if (!identity.identifier.empty()) {
        json[IDENTIFIER] = identity.identifier;
    }
    for (const Tag& tag : identity.tags) {
        json[TAGS][tag.name] = tag.value;
    }
    if (identity.pc) {
        Json& pc = json[PC] = Json::object();
        for (const auto& [fact, value] : identity.pc->facts()) {
            pc[fact] = value;
        }
    }
    for (const AdapterIdentity& adapter : identity.adapters) {
        json[ADAPTERS].push_back(jsonOf(adapter));
    }
    for (const InForce& limits : identity.limits) {
        json[LIMITS].push_back(jsonOf(limits));
    }
    if (identity.calibration) {
        json[CALIBRATION] = jsonOf(*identity.calibration);
    }
    return json;
}

RunIdentity identityOf(const Json& json) {
    RunIdentity identity;
    identity.identifier = json.value(IDENTIFIER, std::string());
    if (json.contains(TAGS)) {
        for (const auto& [name, value] : json.at(TAGS).items()) {
            identity.tags.push_back({.name = name, .value = value.get<std::string>()});
        }
    }
    if (json.contains(PC)) {
        identity.pc.emplace();
        for (const auto& [fact, value] : json.at(PC).items()) {
            identity.pc->set(fact, value.get<std::string>());
        }
    }
    if (json.contains(ADAPTERS)) {
        for (const Json& adapter : json.at(ADAPTERS)) {
            identity.adapters.push_back(adapterOf(adapter));
        }
    }
    if (json.contains(LIMITS)) {
        for (const Json& limits : json.at(LIMITS)) {
            identity.limits.push_back(inForceOf(limits));
        }
    }
    if (json.contains(CALIBRATION)) {
        identity.calibration = inForceOf(json.at(CALIBRATION));
    }
    return identity;
}

} // namespace tesk5
