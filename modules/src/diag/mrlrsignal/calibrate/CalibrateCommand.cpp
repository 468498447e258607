#include <calibrate/CalibrateCommand.h>

#include <calibration/Validity.h>
#include <levels/ModuleObjects.h>
#include <levels/StationFile.h>
#include <levels/TargetParameters.h>
#include <options/CommandOptions.h>
#include <statistics/Moments.h>

#include <tesk5/ModuleInfo.h>
#include <tesk5/ReportFile.h>
#include <tesk5/RunContext.h>
#include <tesk5/Texts.h>

#include <mrl/Files.h>
#include <mrl/System.h>

#include <algorithm>

namespace calibrate {

namespace {

using calibration::Drift;
using tesk5::BadInput;
using tesk5::CommandCall;
using tesk5::message;
using tesk5::Number;
using tesk5::RunContext;

constexpr const char* UNCERTAINTY = "--uncertainty";
constexpr const char* UNIT = "--unit";
constexpr const char* STATION = "--station";
constexpr const char* OUT_FILE = "--out";
constexpr const char* PLACEMENTS = "--placements";
constexpr const char* DAYS = "--days";
constexpr const char* CHECK = "--check";
constexpr const char* ALLOWED = "--allowed";
constexpr const char* EXAMPLE =
    "calibrate --set BSSID=02:00:00:00:01:00 --reference=-50 --unit G-1 "
    "--station Bench1 --out station.toml";
constexpr const char* EXAMPLE_OF_CHECK =
    "calibrate --check --config station.toml --set BSSID=02:00:00:00:01:00";
constexpr int GREATEST_DECIBELS = 20;
constexpr int STANDARD_PLACEMENTS = 5;
constexpr int STANDARD_DAYS = 30;
constexpr double STANDARD_ALLOWED = 1;
// What a person types to end.
constexpr const char* END = "q";

std::string required(const CommandCall& call, const char* name) {
    std::string text = options::givenOption(call, name);
    if (text.empty()) {
        throw BadInput{message("CALIBRATE_NEEDS", {{"Option", name}, {"Example", EXAMPLE}})};
    }
    return text;
}

// The file has two decimals; the offset follows from what is in it.
double asWritten(double number) {
    return Number::rounded(number, 2).toDouble();
}

double referenceOf(const CommandCall& call) {
    required(call, options::REFERENCE);
    return asWritten(*options::levelOption(call, options::REFERENCE));
}

readings::Bssid bssidOfCall() {
    const std::optional<readings::Bssid> bssid = levels::targetOfParameters().bssid;
    if (!bssid) {
        throw BadInput{
            message("CALIBRATE_NEEDS", {{"Option", "--set BSSID"}, {"Example", EXAMPLE}})};
    }
    return *bssid;
}

void say(RunContext& context, const std::string& line) {
    options::printLines(context, {line});
}

// The placements that a person makes.
class Placements {
public:
    Placements(const CommandCall& call, RunContext& context)
        : m_context(context), m_interface(levels::interfaceOf(call.devices.front())),
          m_planned(static_cast<std::size_t>(
              options::wholeOption(call, PLACEMENTS, STANDARD_PLACEMENTS))),
          m_plan(levels::planOfParameters()) {
        m_plan.mayEndEarly = false;
    }

    /// Measures all of them. \return whether all are there: not when the person ends it
    bool measure() {
        sayKeys();
        while (m_levels.size() < m_planned) {
            say(m_context, message("CALIBRATE_PLACE",
                                   {{"Number", m_levels.size() + 1}, {"Count", m_planned}}));
            const auto stop = [this] { return m_context.stopRequest.raised(); };
            const std::optional<std::string> answer = m_context.input->line(stop);
            if (!answer || *answer == END || stop()) {
                return false;
            }
            if (!answer->empty()) {
                sayKeys();
            } else if (!measureOne()) {
                return false;
            }
        }
        return true;
    }

    const std::vector<double>& levels() const { return m_levels; }
    std::optional<nativewifi::Band> band() const { return m_band; }
    /// Levels in dBm are whole numbers, so readings that are all the same have a step too.
    double step() const { return std::max(1.0, statistics::step(m_readings)); }
    std::size_t samples() const { return m_plan.samples; }

private:
    void sayKeys() { say(m_context, message("CALIBRATE_KEYS", {{"Count", m_planned}})); }

    // \return false once it was interrupted; a measurement without a level is repeated
    bool measureOne() {
        say(m_context, message("CALIBRATE_MEASURING"));
        readings::LevelSource source(m_interface, levels::targetOfParameters());
        const readings::Sampling sampling = readings::measure(
            source, m_plan, nullptr, [this] { return m_context.stopRequest.raised(); });
        if (sampling.none == readings::NoLevel::INTERRUPTED) {
            return false;
        }
        if (sampling.none) {
            say(m_context, levels::whyNoLevel(sampling));
            return true;
        }
        const readings::Sampled& sampled = sampling.sampled;
        const std::optional<nativewifi::Band> band =
            nativewifi::bandOf(sampled.samples.back().reading.mhz);
        if (!band || (m_band && m_band != band)) {
            say(m_context, message(band ? "CALIBRATE_OTHER_BAND" : "CALIBRATE_NO_BAND"));
            return true;
        }
        m_band = band;
        m_levels.push_back(sampled.level);
        for (const readings::Sample& sample : sampled.samples) {
            m_readings.push_back(sample.level);
        }
        say(m_context, message("CALIBRATE_MEASURED", {{"Level", levels::levelIn(sampled.level)},
                                                      {"Readings", sampled.samples.size()}}));
        return true;
    }

    RunContext& m_context;
    GUID m_interface;
    std::size_t m_planned;
    readings::SamplingPlan m_plan;
    std::vector<double> m_levels;
    std::vector<double> m_readings;
    std::optional<nativewifi::Band> m_band;
};

int ended(RunContext& context) {
    say(context, message("CALIBRATE_ENDED"));
    return tesk5::TestResult::USERABORTED().value();
}

// What the file has already: the radios that were calibrated before stay in it.
levels::Station stationIn(const std::string& path, const std::string& name) {
    if (mrl::fileKind(mrl::System::path(path)) == mrl::FileKind::missing) {
        return {.name = name, .radios = {}};
    }
    levels::StationFile file = levels::readStation(path);
    if (file.hasOtherSettings) {
        throw BadInput{message("CALIBRATE_FILE_HAS_MORE", {{"File", path}})};
    }
    if (file.station.name != name) {
        throw BadInput{message("CALIBRATE_FILE_OF_OTHER",
                               {{"File", path}, {"Calibrated", file.station.name}})};
    }
    return file.station;
}

std::string softwareOf(const RunContext& context) {
    return std::string(tesk5::moduleInfo().name) + " " + context.version.text() + " (" +
           context.version.build.utf8() + ")";
}

int calibrate(const CommandCall& call, RunContext& context) {
    levels::RadioCalibration radio;
    radio.bssid = bssidOfCall();
    radio.reference.level = referenceOf(call);
    radio.reference.uncertainty = asWritten(
        options::decimalOption(call, UNCERTAINTY, GREATEST_DECIBELS, "CALIBRATE_NO_DECIBELS")
            .value_or(0));
    radio.unit = required(call, UNIT);
    const std::string name = required(call, STATION);
    const std::string path = required(call, OUT_FILE);
    levels::Station station = stationIn(path, name);
    const tesk5::ReportFile file(path);
    Placements placements(call, context);
    if (!placements.measure()) {
        return ended(context);
    }
    radio.band = *placements.band();
    radio.placements = placements.levels();
    radio.step = placements.step();
    radio.samples = placements.samples();
    radio.date = levels::today();
    radio.days = options::wholeOption(call, DAYS, STANDARD_DAYS);
    radio.software = softwareOf(context);
    const calibration::Offset offset = radio.offset();
    station.put(radio);
    // Before the file: on a full disk the placements were not for nothing.
    say(context,
        message("CALIBRATE_OFFSET", {{"Station", name},
                                     {"BSSID", readings::bssidText(radio.bssid)},
                                     {"Band", levels::bandName(radio.band)},
                                     {"Offset", levels::decibelsIn(offset.value)},
                                     {"Uncertainty", levels::decibelsIn(offset.expanded)},
                                     {"Deviation", levels::decibelsIn(offset.placementDeviation)},
                                     {"Expiry", levels::dayText(radio.expiry())}}));
    file.replace(levels::stationText(station));
    say(context, message("COMMAND_WRITTEN", {{"File", path}}));
    return 0;
}

// The calibration of the radio that is to be checked; of several bands, the one that Band names.
const levels::RadioCalibration& calibrated(const levels::Station& station,
                                           const std::string& path) {
    const readings::Target target = levels::targetOfParameters();
    const readings::Bssid bssid = bssidOfCall();
    const auto isMeant = [&](const levels::RadioCalibration& radio) {
        return radio.bssid == bssid && (!target.band || target.band == radio.band);
    };
    const auto found = std::ranges::find_if(station.radios, isMeant);
    if (found == station.radios.end()) {
        throw BadInput{message("CALIBRATE_NOT_CALIBRATED",
                               {{"File", path}, {"BSSID", readings::bssidText(bssid)}})};
    }
    return *found;
}

int check(const CommandCall& call, RunContext& context) {
    const std::string path = parameters::calibration->value().valueString().utf8();
    if (path.empty()) {
        throw BadInput{message("CALIBRATE_CHECK_NEEDS", {{"Example", EXAMPLE_OF_CHECK}})};
    }
    const double allowed =
        options::decimalOption(call, ALLOWED, GREATEST_DECIBELS, "CALIBRATE_NO_DECIBELS")
            .value_or(STANDARD_ALLOWED);
    const levels::StationFile file = levels::readStation(path);
    levels::RadioCalibration radio = calibrated(file.station, path);
    if (!options::givenOption(call, STATION).empty() &&
        options::givenOption(call, STATION) != file.station.name) {
        throw BadInput{message("CALIBRATE_FILE_OF_OTHER",
                               {{"File", path}, {"Calibrated", file.station.name}})};
    }
    say(context, message("CALIBRATE_CHECKS", {{"Unit", radio.unit},
                                              {"Reference", levels::levelIn(radio.reference.level)},
                                              {"Date", levels::dayText(radio.date)},
                                              {"Station", file.station.name}}));
    if (calibration::validity(radio.date, radio.days, levels::today()) !=
        calibration::Validity::VALID) {
        say(context, message("CALIBRATION_EXPIRED", {{"File", path},
                                                     {"From", levels::dayText(radio.date)},
                                                     {"Expiry", levels::dayText(radio.expiry())}}));
    }
    Placements placements(call, context);
    if (!placements.measure()) {
        return ended(context);
    }
    if (placements.band() != radio.band) {
        say(context, message("CALIBRATE_OTHER_BAND"));
        return tesk5::TestResult::CANNOTRUN().value();
    }
    const calibration::Offset before = radio.offset();
    radio.placements = placements.levels();
    radio.step = placements.step();
    const calibration::Offset now = radio.offset();
    const calibration::DriftCheck found =
        calibration::checkDrift(before, now, allowed, levels::CALIBRATION_CONFIDENCE);
    say(context, message("CALIBRATE_CHANGE", {{"Before", levels::decibelsIn(before.value)},
                                              {"Now", levels::decibelsIn(now.value)},
                                              {"Change", levels::decibelsIn(found.change)},
                                              {"Low", levels::decibelsIn(found.interval.low)},
                                              {"High", levels::decibelsIn(found.interval.high)}}));
    // In the order of Drift.
    constexpr const char* VERDICTS[] = {"CALIBRATE_HOLDS", "CALIBRATE_DRIFTED",
                                        "CALIBRATE_CANNOT_TELL"};
    const tesk5::TestResult results[] = {tesk5::TestResult::PASS(), tesk5::TestResult::FAIL(),
                                         tesk5::TestResult::WARN()};
    const auto verdict = static_cast<std::size_t>(found.drift);
    say(context, message(VERDICTS[verdict], {{"Allowed", levels::decibelsIn(allowed)}}));
    return results[verdict].value();
}

int runCalibrate(const CommandCall& call, RunContext& context) {
    return call.options.contains(CHECK) ? check(call, context) : calibrate(call, context);
}

} // namespace

tesk5::ModuleCommand calibrateCommand() {
    return {.name = "calibrate",
            .arguments = "",
            .help = "HELP_CALIBRATE",
            .examples = {EXAMPLE, EXAMPLE_OF_CHECK},
            .run = &runCalibrate,
            // The first and the one of the file are those of study and limits.
            .options = {{options::REFERENCE, "LEVEL", "HELP_REFERENCE", options::REFERENCE_EXAMPLE},
                        {UNCERTAINTY, "DB", "HELP_UNCERTAINTY",
                         "calibrate --reference=-50 --uncertainty 0.5"},
                        {UNIT, "SERIAL", "HELP_UNIT", "calibrate --unit G-1"},
                        {STATION, "NAME", "HELP_STATION", "calibrate --station Bench1"},
                        {OUT_FILE, "FILE", "HELP_OUT", "limits --from good.csv --out limits.toml"},
                        {.name = PLACEMENTS,
                         .argument = "N",
                         .help = "HELP_PLACEMENTS",
                         .example = "calibrate --placements 10",
                         .range = tesk5::NumberRange{calibration::FEWEST_PLACEMENTS,
                                                     levels::MOST_PLACEMENTS, ""}},
                        {.name = DAYS,
                         .argument = "N",
                         .help = "HELP_DAYS",
                         .example = "calibrate --days 7",
                         .range = tesk5::NumberRange{1, levels::MOST_CALIBRATION_DAYS, ""}},
                        {CHECK, nullptr, "HELP_CALIBRATE_CHECK", EXAMPLE_OF_CHECK},
                        {ALLOWED, "DB", "HELP_ALLOWED", "calibrate --check --allowed 0.5"}},
            .parameters = {"BSSID", "Band", "Samples", "MaxSeconds", "Calibration"},
            .test = "SignalLevelTest"};
}

} // namespace calibrate
