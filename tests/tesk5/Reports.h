// The fixture of tests of what a run reports: each kind of report, read back.
#pragma once

#include "FrameworkTest.h"

#include <nlohmann/json.hpp>

#include <sstream>

namespace test {

using nlohmann::ordered_json;

/// The members `name` of objects.
inline std::vector<ordered_json> allOf(const std::string& name,
                                       const std::vector<ordered_json>& objects) {
    std::vector<ordered_json> members;
    members.reserve(objects.size());
    for (const ordered_json& object : objects) {
        members.push_back(object.at(name));
    }
    return members;
}

class Reports : public FrameworkTest {
protected:
    /// Starts a run with a report of every kind; \return its exit value.
    int startWithReports(std::vector<std::string> arguments = {}) {
        forgetOutput();
        arguments.insert(arguments.begin(), {"run", "--json", file("r.json"), "--junit",
                                             file("r.xml"), "--html", file("r.html")});
        return start(std::move(arguments));
    }
    int startWithEvents() { return startWithReports({"--events"}); }

    ordered_json json() const { return ordered_json::parse(bytesOfFile(file("r.json"))); }
    ordered_json result(std::size_t run) const { return json().at("results").at(run); }
    std::string junit() const { return bytesOfFile(file("r.xml")); }
    std::string html() const { return bytesOfFile(file("r.html")); }
    std::vector<ordered_json> events() const {
        std::vector<ordered_json> lines;
        std::istringstream stream(output());
        for (std::string line; std::getline(stream, line);) {
            lines.push_back(ordered_json::parse(line));
        }
        return lines;
    }
    std::vector<ordered_json> types() const { return allOf("type", events()); }
};

} // namespace test
