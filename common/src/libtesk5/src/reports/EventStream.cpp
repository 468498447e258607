#include "reports/EventStream.h"

#include <tesk5/RunIdentityJson.h>

#include "reports/ReportJson.h"

namespace tesk5 {

namespace {
constexpr int PROTOCOL = 1;
} // namespace

void EventStream::write(const char* type, const Json& members) {
    const std::lock_guard guard(m_mutex);
    Json line;
    line["type"] = type;
    line["sequence"] = ++m_sequence;
    line["time"] = mrl::utcText(mrl::Clock::current().utcNow());
    line["runIdentifier"] = m_identifier;
    line.update(members);
    // Hosts read pipes in different code pages; ASCII is in all of them. The text of an exception
    // may be in any encoding, so ill-formed UTF-8 is replaced.
    m_stream << std::string_view(asciiLine(line));
    m_stream.flush();
}

void EventStream::writeOfRun(const char* type, const Json& members) {
    Json numbered;
    numbered["run"] = m_run;
    numbered.update(members);
    write(type, numbered);
}

void EventStream::onRunStart(const RunRecord& record, const std::vector<PlannedRun>& plan) {
    m_identifier = record.identity.identifier;
    Json members;
    members["protocol"] = PROTOCOL;
    members["module"] = moduleJson(record.version);
    members.update(identityJson(record.identity)); // the identifier keeps its place
    members["planned"] = plan.size();
    members["withoutDevice"] = listOf(record.withoutDevice);
    write("runStarted", members);
}

void EventStream::onTestStart(const PlannedRun& run) {
    ++m_run;
    Json members;
    members["test"] = run.test->name().utf8();
    members["interactive"] = run.test->interactive();
    members["device"] = jsonOf(*run.device);
    members["parameters"] = parametersJson(parametersInForce(*run.test));
    writeOfRun("testStarted", members);
}

void EventStream::onEvent(const RaisedEvent& event) {
    writeOfRun("event", {{"event", jsonOf(event)}});
}

void EventStream::onMeasurement(const Measurement& measurement) {
    writeOfRun("measurement", {{"measurement", jsonOf(measurement)}});
}

void EventStream::onSurvey(const Survey& survey) {
    writeOfRun("survey", {{"survey", jsonOf(survey)}});
}

void EventStream::onSeries(const Series::Head& head) {
    writeOfRun("series", {{"series", jsonOf(head)}});
}

void EventStream::onPoint(const TeskString& series, const SeriesPoint& point) {
    writeOfRun("point", {{"series", series.utf8()}, {"point", jsonOf(point)}});
}

void EventStream::onProgress(const Progress& progress) {
    Json members;
    members["key"] = progress.key.utf8();
    members["text"] = progress.text;
    members["longestSeconds"] =
        progress.longestSeconds ? Json(*progress.longestSeconds) : Json(nullptr);
    writeOfRun("progress", members);
}

void EventStream::onTestEnd(const Outcome& outcome) {
    if (!outcome.started) {
        ++m_run;
    }
    Json members;
    members["called"] = outcome.started;
    members["failure"] = outcome.failure;
    members["result"] = jsonOf(outcome);
    writeOfRun("testEnded", members);
}

void EventStream::onTestBroken(const PlannedRun& /*run*/, const std::string& reason) {
    writeOfRun("broken", {{"reason", reason}});
}

void EventStream::onStopRequest() {
    write("stopping", Json::object());
}

void EventStream::onRunEnd(const RunRecord& record) {
    Json members;
    members["exit"] = record.exitValue;
    members["started"] = mrl::utcText(record.started);
    members["ended"] = mrl::utcText(record.ended);
    members["leftOut"] = record.leftOut;
    write("runEnded", members);
}

} // namespace tesk5
