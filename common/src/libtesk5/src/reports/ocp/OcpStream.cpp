#include "reports/ocp/OcpStream.h"

#include <tesk5/DeviceList.h>
#include <tesk5/ModuleInfo.h>
#include <tesk5/RunIdentityJson.h>
#include <tesk5/Texts.h>

#include "reports/FormatFacts.h"
#include "reports/ReportJson.h"
#include "reports/ocp/OcpJson.h"
#include "run/ReportWords.h"

#include <algorithm>
#include <cctype>
#include <iterator>

namespace tesk5 {

namespace {

constexpr const char* PC_HARDWARE = "0";
constexpr const char* MODULE_SOFTWARE = "0";
constexpr const char* SYSTEM_SOFTWARE = "1";

// What a result is in the format. Its pairs of status and result are the only ones allowed.
struct ResultRow {
    TestResult result;
    ocp::TestStatus status;
    ocp::TestResult runResult;
    ocp::DiagnosisType diagnosis;
    const char* ending; ///< of the verdict; the symptom of an error
};
const ResultRow resultRows[] = {
    {TestResult::PASS(), ocp::TestStatus::complete, ocp::TestResult::pass, ocp::DiagnosisType::pass,
     "pass"},
    {TestResult::WARN(), ocp::TestStatus::complete, ocp::TestResult::pass, ocp::DiagnosisType::pass,
     "marginal"},
    {TestResult::COMPLETED(), ocp::TestStatus::complete, ocp::TestResult::pass,
     ocp::DiagnosisType::unknown, "completed"},
    {TestResult::FAIL(), ocp::TestStatus::complete, ocp::TestResult::fail, ocp::DiagnosisType::fail,
     "fail"},
    {TestResult::CANNOTRUN(), ocp::TestStatus::skip, ocp::TestResult::notApplicable,
     ocp::DiagnosisType::unknown, "cannot-run"},
    {TestResult::USERABORTED(), ocp::TestStatus::skip, ocp::TestResult::notApplicable,
     ocp::DiagnosisType::unknown, "user-aborted"},
    {TestResult::BADPARAMS(), ocp::TestStatus::error, ocp::TestResult::notApplicable,
     ocp::DiagnosisType::unknown, "bad-parameters"},
    {TestResult::INTERNALERROR(), ocp::TestStatus::error, ocp::TestResult::notApplicable,
     ocp::DiagnosisType::unknown, "internal-error"},
    {TestResult::EXITEDABNORMALLY(), ocp::TestStatus::error, ocp::TestResult::notApplicable,
     ocp::DiagnosisType::unknown, "exited-abnormally"},
};

const ResultRow& rowOf(const TestResult& result) {
    return rowFor(result, resultRows);
}

// "DiversityTest" as verdicts write it: "diversity-test".
std::string inVerdict(const Test& test) {
    std::string verdict;
    for (const char letter : test.name().utf8()) {
        if (std::isupper(static_cast<unsigned char>(letter)) != 0) {
            verdict += verdict.empty() ? "" : "-";
        }
        verdict += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    }
    return verdict;
}

std::string idOf(std::size_t number) {
    return std::to_string(number);
}

ocp::HardwareInfo hardwareOf(const RunIdentity& identity, const PcIdentity& pc) {
    return {.hardwareInfoId = PC_HARDWARE,
            .computerSystem = pc.name,
            .name = pc.model.empty() ? "PC" : pc.model,
            .location = tagOr(identity, "fixture", {}),
            .partNumber = tagOr(identity, "part", {}),
            .serialNumber = unitSerial(identity, {}),
            .manufacturer = pc.maker,
            .partType = "PC",
            .revision = tagOr(identity, "revision", {})};
}

// The address of an adapter, which no other has; empty when it is unknown.
std::string addressOf(const DiagDevice& device, const RunIdentity& identity) {
    const std::string name = device.property(DEVICE_SYSTEM_NAME).value().utf8();
    const auto known =
        std::find_if(identity.adapters.begin(), identity.adapters.end(),
                     [&name](const AdapterIdentity& adapter) { return name == adapter.device; });
    return known == identity.adapters.end() ? std::string() : known->address;
}

ocp::DutInfo dutOf(const RunRecord& record, const std::vector<const DiagDevice*>& devices) {
    const RunIdentity& identity = record.identity;
    const PcIdentity pc = identity.pc.value_or(PcIdentity());
    ocp::DutInfo dut;
    dut.dutInfoId = unitSerial(identity, pc.name.empty() ? PC_HARDWARE : pc.name);
    dut.name = pc.name;
    if (!pc.maker.empty() || !pc.model.empty()) {
        const char* const between = pc.maker.empty() || pc.model.empty() ? "" : " ";
        dut.platformInfos.push_back({pc.maker + between + pc.model});
    }
    dut.softwareInfos.push_back({.softwareInfoId = MODULE_SOFTWARE,
                                 .computerSystem = pc.name,
                                 .name = std::string(moduleInfo().name),
                                 .version = record.version.text(),
                                 .revision = record.version.build.utf8(),
                                 .softwareType = ocp::SoftwareType::application});
    if (!pc.system.empty()) {
        dut.softwareInfos.push_back({.softwareInfoId = SYSTEM_SOFTWARE,
                                     .computerSystem = pc.name,
                                     .name = pc.system,
                                     .version = pc.build,
                                     .revision = {},
                                     .softwareType = ocp::SoftwareType::system});
    }
    dut.hardwareInfos.push_back(hardwareOf(identity, pc));
    for (const AdapterIdentity& adapter : identity.adapters) {
        if (!adapter.driver.empty()) {
            dut.softwareInfos.push_back({.softwareInfoId = idOf(dut.softwareInfos.size()),
                                         .computerSystem = pc.name,
                                         .name = adapter.driver,
                                         .version = adapter.version,
                                         .revision = {},
                                         .softwareType = ocp::SoftwareType::system});
        }
    }
    Json properties = Json::object();
    for (const DiagDevice* device : devices) {
        const std::string id = idOf(dut.hardwareInfos.size());
        dut.hardwareInfos.push_back({.hardwareInfoId = id,
                                     .computerSystem = pc.name,
                                     .name = device->name().utf8(),
                                     .location = {},
                                     .partNumber = {},
                                     .serialNumber = addressOf(*device, identity),
                                     .manufacturer = {},
                                     .partType = {},
                                     .revision = {}});
        properties[id] = jsonOf(*device).at("properties");
    }
    dut.metadata["deviceProperties"] = std::move(properties);
    return dut;
}

Json parametersOf(const std::vector<PlannedRun>& plan) {
    Json all = Json::object();
    for (const PlannedRun& run : plan) {
        addParameters(all, *run.test, parametersInForce(*run.test));
    }
    return all;
}

ocp::ValidatorType typeOf(Limit::Kept kept) {
    switch (kept) {
    case Limit::Kept::AT_LEAST:
        return ocp::ValidatorType::greaterThanOrEqual;
    case Limit::Kept::AT_MOST:
        return ocp::ValidatorType::lessThanOrEqual;
    default:
        return ocp::ValidatorType::greaterThan;
    }
}

ocp::Validator validatorOf(const Limit& limit) {
    return {.name = limit.severity == Severity::error ? "fail_limit" : "warn_limit",
            .type = typeOf(limit.kept),
            .value = limit.value,
            .metadata = {{"parameter", limit.name.utf8()}}};
}

std::vector<ocp::Validator> validatorsOf(const std::vector<Limit>& limits) {
    std::vector<ocp::Validator> validators;
    std::transform(limits.begin(), limits.end(), std::back_inserter(validators), &validatorOf);
    return validators;
}

ocp::Log logOf(const RaisedEvent& event) {
    return {event.severity == Severity::error ? ocp::Severity::error : ocp::Severity::warning,
            event.key.utf8() + ": " + event.text};
}

} // namespace

template <typename Artifact>
void OcpStream::write(Artifact artifact) {
    const ocp::OutputArtifact line{.artifact = std::move(artifact),
                                   .sequenceNumber = m_sequence++,
                                   .timestamp = mrl::Clock::current().utcNow()};
    m_lines.write(asciiLine(ocp::jsonOf(line)));
}

template <typename Artifact>
void OcpStream::writeOfStep(Artifact artifact) {
    write(ocp::TestStepArtifact{.testStepId = idOf(m_steps - 1), .artifact = std::move(artifact)});
}

void OcpStream::beginStep(const Test& test) {
    ++m_steps;
    m_stepRuns = true;
    m_stepStart = mrl::Clock::current().utcNow();
    writeOfStep(ocp::TestStepStart{test.name().utf8()});
}

std::string OcpStream::hardwareIdOf(const DiagDevice& device) const {
    const auto known = std::find(m_devices.begin(), m_devices.end(), &device);
    return idOf(static_cast<std::size_t>(known - m_devices.begin()) + 1);
}

void OcpStream::onRunStart(const RunRecord& record, const std::vector<PlannedRun>& plan) {
    for (const PlannedRun& run : plan) {
        if (std::find(m_devices.begin(), m_devices.end(), run.device) == m_devices.end()) {
            m_devices.push_back(run.device);
        }
    }
    write(ocp::SchemaVersion());
    write(ocp::TestRunArtifact(ocp::TestRunStart{.name = std::string(moduleInfo().name),
                                                 .version = record.version.text(),
                                                 .commandLine = m_commandLine,
                                                 .parameters = parametersOf(plan),
                                                 .dutInfo = dutOf(record, m_devices),
                                                 .metadata = identityJson(record.identity)}));
    for (const TestWithoutDevice& without : record.withoutDevice) {
        beginStep(*without.test);
        std::vector<std::string> lines = without.reasons;
        lines.insert(lines.begin(), message("REPORT_NO_DEVICE"));
        for (const std::string& line : lines) {
            writeOfStep(ocp::Log{ocp::Severity::warning, line});
        }
        writeOfStep(ocp::TestStepEnd{ocp::TestStatus::skip});
        m_stepRuns = false;
    }
}

void OcpStream::onTestStart(const PlannedRun& run) {
    m_hardwareId = hardwareIdOf(*run.device);
    beginStep(*run.test);
}

void OcpStream::onEvent(const RaisedEvent& event) {
    writeOfStep(logOf(event));
}

void OcpStream::onMeasurement(const Measurement& measurement) {
    Json metadata = {{"lowest", jsonOf(measurement.lowest)},
                     {"highest", jsonOf(measurement.highest)}};
    metadata.update(jsonOf(measurement.attributes));
    writeOfStep(ocp::Measurement{.name = measurement.name.utf8(),
                                 .value = measurement.value,
                                 .unit = measurement.unit.utf8(),
                                 .validators = validatorsOf(measurement.limits),
                                 .hardwareInfoId = m_hardwareId,
                                 .metadata = std::move(metadata)});
    for (const Figure& figure : measurement.figures) {
        writeOfStep(ocp::Measurement{.name = figureName(measurement, figure),
                                     .value = figure.value,
                                     .unit = figure.unit.utf8(),
                                     .validators = {},
                                     .hardwareInfoId = m_hardwareId,
                                     .metadata = Json::object()});
    }
}

void OcpStream::onSurvey(const Survey& survey) {
    writeOfStep(ocp::Extension{.name = "survey", .content = jsonOf(survey)});
}

// The head of a series comes again with what is known after its last point. The format has it at
// the beginning alone. Limits are held against the measurement that the points lead to, not against
// each point, so that the series has no validators.
void OcpStream::onSeries(const Series::Head& head) {
    const auto [series, begins] = m_series.try_emplace(head.name);
    if (!begins) {
        return;
    }
    series->second.id = idOf(m_allSeries++);
    writeOfStep(ocp::MeasurementSeriesStart{.measurementSeriesId = series->second.id,
                                            .name = head.name.utf8(),
                                            .unit = head.unit.utf8(),
                                            .hardwareInfoId = m_hardwareId});
}

void OcpStream::onPoint(const TeskString& series, const SeriesPoint& point) {
    RunningSeries& running = m_series.at(series);
    writeOfStep(ocp::MeasurementSeriesElement{
        .index = running.points++,
        .measurementSeriesId = running.id,
        .value = point.value,
        .timestamp = m_stepStart + std::chrono::duration_cast<mrl::Clock::UtcTime::duration>(
                                       std::chrono::duration<double>(point.seconds)),
        .metadata = jsonOf(point.attributes)});
}

void OcpStream::onProgress(const Progress& progress) {
    writeOfStep(ocp::Log{ocp::Severity::debug, progress.text});
}

void OcpStream::onTestEnd(const Outcome& outcome) {
    if (!outcome.started) {
        m_hardwareId = hardwareIdOf(*outcome.device);
        beginStep(*outcome.test);
    }
    endStep(outcome);
}

void OcpStream::endStep(const Outcome& outcome) {
    for (const auto& [name, series] : m_series) {
        writeOfStep(ocp::MeasurementSeriesEnd{.measurementSeriesId = series.id,
                                              .totalCount = series.points});
    }
    m_series.clear();
    const ResultRow& row = rowOf(outcome.result);
    const std::string reason = plainlyGood(outcome) ? std::string() : reasonFor(outcome);
    if (row.status == ocp::TestStatus::error) {
        writeOfStep(ocp::Error{
            .symptom = row.ending, .message = reason, .softwareInfoIds = {MODULE_SOFTWARE}});
    } else {
        writeOfStep(ocp::Diagnosis{.verdict = inVerdict(*outcome.test) + "-" + row.ending,
                                   .type = row.diagnosis,
                                   .message = reason,
                                   .hardwareInfoId = m_hardwareId});
    }
    writeOfStep(ocp::TestStepEnd{row.status});
    m_stepRuns = false;
}

void OcpStream::end(const RunRecord& record) {
    if (m_stepRuns) { // an exception has ended it
        endStep(record.outcomes.back());
    }
    if (record.leftOut > 0) {
        write(ocp::TestRunArtifact(
            ocp::Log{ocp::Severity::warning,
                     message("REPORT_LEFT_OUT", {{"Count", std::to_string(record.leftOut)}})}));
    }
    const ResultRow& row = rowOf(worstResult(record));
    write(ocp::TestRunArtifact(ocp::TestRunEnd{row.status, row.runResult}));
}

} // namespace tesk5
