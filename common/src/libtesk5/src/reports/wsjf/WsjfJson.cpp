#include "reports/wsjf/WsjfJson.h"

#include "reports/FormatJson.h"
#include "reports/ReportJson.h"

namespace tesk5::wsjf {

namespace {

const char* letterOf(Status status) {
    constexpr const char* letters[] = {"P", "F", "E", "T", "S"};
    return letters[static_cast<int>(status)];
}

Json jsonOf(const NumericMeasurement& measurement) {
    Json json;
    json["name"] = measurement.name;
    json["status"] = letterOf(measurement.status);
    json["compOp"] = measurement.compOp;
    json["value"] = tesk5::jsonOf(measurement.value);
    addKnown(json, "unit", measurement.unit);
    if (measurement.lowLimit) {
        json["lowLimit"] = tesk5::jsonOf(*measurement.lowLimit);
    }
    if (measurement.highLimit) {
        json["highLimit"] = tesk5::jsonOf(*measurement.highLimit);
    }
    return json;
}

Json jsonOf(const SequenceCall& call) {
    return {{"path", call.path}, {"name", call.name}, {"version", call.version}};
}

Json jsonOf(const ChartSeries& series) {
    return {{"dataType", "XYG"},
            {"name", series.name},
            {"xdata", series.xdata},
            {"ydata", series.ydata}};
}

Json jsonOf(const Chart& chart) {
    const auto toJson = [](const auto& part) { return jsonOf(part); };
    Json json;
    json["chartType"] = "Line";
    json["label"] = chart.label;
    json["xLabel"] = chart.xLabel;
    json["xUnit"] = chart.xUnit;
    json["yLabel"] = chart.yLabel;
    json["yUnit"] = chart.yUnit;
    addKnown(json, "series", chart.series, toJson);
    return json;
}

Json jsonOf(const Step& step) {
    const auto toJson = [](const auto& part) { return jsonOf(part); };
    Json json;
    json["id"] = step.id;
    json["group"] = "M"; // the main part, between setup and cleanup
    json["stepType"] = step.stepType;
    json["name"] = step.name;
    json["start"] = step.start;
    json["status"] = letterOf(step.status);
    json["totTime"] = step.totTime;
    json["causedUUTFailure"] = step.causedUUTFailure;
    addKnown(json, "errorMessage", step.errorMessage);
    addKnown(json, "reportText", step.reportText);
    if (step.seqCall) {
        json["seqCall"] = jsonOf(*step.seqCall);
    }
    addKnown(json, "numericMeas", step.numericMeas, toJson);
    if (step.chart) {
        json["chart"] = jsonOf(*step.chart);
    }
    addKnown(json, "steps", step.steps, toJson);
    return json;
}

Json jsonOf(const MiscInfo& info) {
    return {{"description", info.description}, {"text", info.text}};
}

Json jsonOf(const Uut& uut) {
    Json json;
    json["user"] = uut.user;
    addKnown(json, "batchSN", uut.batchSN);
    addKnown(json, "fixtureId", uut.fixtureId);
    addKnown(json, "comment", uut.comment);
    addKnown(json, "errorMessage", uut.errorMessage);
    json["execTime"] = uut.execTime;
    return json;
}

} // namespace

Json jsonOf(const Report& report) {
    const auto toJson = [](const auto& part) { return jsonOf(part); };
    Json json;
    json["type"] = "T"; // a test, not a repair
    json["id"] = report.id;
    json["pn"] = report.pn;
    json["sn"] = report.sn;
    json["rev"] = report.rev;
    json["processCode"] = report.processCode;
    json["result"] = letterOf(report.result);
    json["machineName"] = report.machineName;
    json["location"] = report.location;
    json["purpose"] = report.purpose;
    json["start"] = report.start;
    json["startUTC"] = report.startUTC;
    json["root"] = jsonOf(report.root);
    json["uut"] = jsonOf(report.uut);
    addKnown(json, "miscInfos", report.miscInfos, toJson);
    return json;
}

} // namespace tesk5::wsjf
