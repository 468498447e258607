#include <limits/ReportLevels.h>

#include <tesk5/BadInput.h>
#include <tesk5/InputFile.h>
#include <tesk5/Texts.h>

#include <mrl/Files.h>
#include <mrl/Json.h>
#include <mrl/System.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <set>

namespace limits {

namespace {

using mrl::Json;
using tesk5::message;

constexpr const char* REPORT_END = ".json";
// A report with a thousand readings has some two hundred kilobytes.
constexpr std::size_t LARGEST_REPORT = 0x4000000;

[[noreturn]] void refuse(const char* key, const std::string& path) {
    throw tesk5::BadInput{message(key, {{"File", path}})};
}

std::string utf8(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

bool isFolder(const std::string& path) {
    return mrl::fileKind(mrl::System::path(path)) == mrl::FileKind::directory;
}

std::vector<std::string> reportsIn(const std::string& path) {
    if (!isFolder(path)) {
        return {path};
    }
    std::vector<std::string> reports;
    std::error_code failure;
    for (std::filesystem::directory_iterator entry(mrl::System::path(path), failure), last;
         !failure && entry != last; entry.increment(failure)) {
        std::string file = utf8(entry->path());
        if (file.ends_with(REPORT_END)) {
            reports.push_back(std::move(file));
        }
    }
    if (reports.empty()) {
        refuse("REPORTS_NONE", path);
    }
    std::sort(reports.begin(), reports.end());
    return reports;
}

// Null where there is no such member.
Json at(const Json& json, const char* place) {
    const Json::json_pointer pointer(place);
    return json.contains(pointer) ? json[pointer] : Json();
}

struct Unit {
    double level = 0;
    std::string measured; ///< when, and with which adapter
    std::string target;   ///< what was measured
    bool isCalibrated = false;
};

std::optional<Unit> unitOf(const Json& result) {
    for (const Json& measurement : at(result, "/measurements")) {
        if (at(measurement, "/name") == "Level" && at(measurement, "/unit") == "dBm" &&
            at(measurement, "/value").is_number()) {
            return Unit{
                .level = measurement["value"].get<double>(),
                .measured = Json::array({at(result, "/started"), at(result, "/device")}).dump(),
                .target =
                    Json::array({at(result, "/parameters/SSID"), at(result, "/parameters/BSSID"),
                                 at(result, "/parameters/Band")})
                        .dump(),
                .isCalibrated = at(measurement, "/attributes/CalibrationSHA256").is_string()};
        }
    }
    return std::nullopt;
}

Unit unitIn(const std::string& path) {
    Json report;
    try {
        report = mrl::parseJson(tesk5::readInputFile(path, LARGEST_REPORT));
    } catch (const mrl::JsonFailure&) {
        refuse("REPORTS_UNUSABLE", path);
    }
    if (at(report, "/schema") != 1 || at(report, "/module/name") != "mrlrsignal" ||
        !at(report, "/results").is_array()) {
        refuse("REPORTS_UNUSABLE", path);
    }
    std::optional<Unit> unit;
    for (const Json& result : report["results"]) {
        if (std::optional<Unit> found = unitOf(result)) {
            if (unit) {
                refuse("REPORTS_SEVERAL_LEVELS", path);
            }
            unit = std::move(found);
        }
    }
    if (!unit) {
        refuse("REPORTS_NO_LEVEL", path);
    }
    return *std::move(unit);
}

} // namespace

bool namesReports(const std::string& path) {
    return path.ends_with(REPORT_END) || isFolder(path);
}

std::vector<double> levelsInReports(const std::string& path) {
    std::vector<double> levels;
    std::optional<Unit> first;
    std::set<std::string> known;
    for (const std::string& file : reportsIn(path)) {
        Unit unit = unitIn(file);
        if (!first) {
            first = unit;
        }
        if (unit.target != first->target) {
            refuse("REPORTS_OTHER_TARGET", file);
        }
        if (unit.isCalibrated != first->isCalibrated) {
            refuse("REPORTS_OTHER_SCALE", file);
        }
        if (!known.insert(unit.measured).second) {
            refuse("REPORTS_TWICE", file);
        }
        levels.push_back(unit.level);
    }
    return levels;
}

} // namespace limits
