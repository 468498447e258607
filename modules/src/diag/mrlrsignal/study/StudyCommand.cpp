#include <study/StudyCommand.h>

#include <gauge/TypeOne.h>
#include <levels/TargetParameters.h>
#include <options/CommandOptions.h>
#include <study/GuidedStudy.h>
#include <study/StudyFile.h>
#include <study/StudyPage.h>
#include <study/StudyText.h>
#include <study/TypeOneReport.h>
#include <tables/TableFile.h>

#include <tesk5/ReportFile.h>
#include <tesk5/RunContext.h>
#include <tesk5/TestResult.h>
#include <tesk5/Texts.h>

namespace study {

namespace {

using tesk5::CommandCall;
using tesk5::message;

constexpr const char* TOLERANCE = "--tolerance";
constexpr const char* TYPE_ONE = "--type1";
constexpr const char* FILE_OPTION = "--file";
constexpr const char* CSV = "--csv";
constexpr const char* PAGE = "--page";
constexpr const char* PARTS = "--parts";
constexpr const char* OPERATORS = "--operators";
constexpr const char* TRIALS = "--trials";
constexpr int WIDEST_TOLERANCE = 200;

std::optional<double> toleranceOf(const CommandCall& call) {
    constexpr const char* REFUSAL = "STUDY_TOLERANCE_REFUSED";
    const std::optional<double> width =
        options::decimalOption(call, TOLERANCE, WIDEST_TOLERANCE, REFUSAL);
    if (width && *width <= 0) {
        throw tesk5::BadInput{message(REFUSAL, {{"Text", options::givenOption(call, TOLERANCE)},
                                                {"Greatest", WIDEST_TOLERANCE}})};
    }
    return width;
}

// The file that an option names, if it is given.
std::optional<tesk5::ReportFile> fileOf(const CommandCall& call, const char* option) {
    const std::string path = options::givenOption(call, option);
    return path.empty() ? std::nullopt : std::optional<tesk5::ReportFile>(path);
}

// Where the results of a study go besides the console.
struct StudyOutput {
    std::optional<tesk5::ReportFile> csv;
    std::optional<tesk5::ReportFile> page;
    std::optional<double> tolerance;
};

StudyOutput outputOf(const CommandCall& call) {
    return {.csv = fileOf(call, CSV), .page = fileOf(call, PAGE), .tolerance = toleranceOf(call)};
}

// Writes the figures and the readings. \param session the guided one, or null
void write(mrl::Json figures, const StudyReadings& data, const StudyOutput& output,
           const tesk5::ReportFile* file, const StudySession* session) {
    if (file != nullptr) {
        if (session != nullptr) {
            figures["session"] = session->json();
        }
        file->replace(figures.dump(2) + "\n");
    }
    if (output.csv) {
        output.csv->replace(studyCsv(data));
    }
}

void sayWritten(const CommandCall& call, tesk5::RunContext& context) {
    for (const char* const option : {FILE_OPTION, CSV, PAGE}) {
        if (const std::string path = options::givenOption(call, option); !path.empty()) {
            options::printLines(context, {message("COMMAND_WRITTEN", {{"File", path}})});
        }
    }
}

// Computes the study, shows it and writes its files. \param session the guided one, or null
void finish(const StudyReadings& data, const StudyOutput& output, const tesk5::ReportFile* file,
            const StudySession* session, const CommandCall& call, tesk5::RunContext& context) {
    gauge::StudyOptions given;
    given.tolerance = output.tolerance;
    const StudyResult result(data, given);
    options::printLines(context, studyReport(result));
    write(studyJson(result), data, output, file, session);
    if (output.page) {
        output.page->replace(studyPage(result));
    }
    sayWritten(call, context);
}

// The same for one part. \param reference its level
void finishOfOnePart(const StudyReadings& data, double reference, const StudyOutput& output,
                     const tesk5::ReportFile* file, const StudySession* session,
                     const CommandCall& call, tesk5::RunContext& context) {
    const TypeOneResult result(
        data, {.reference = reference, .tolerance = output.tolerance, .confidence = 0.95});
    options::printLines(context, typeOneReport(result));
    write(typeOneJson(result), data, output, file, session);
    sayWritten(call, context);
}

bool isGuided(const CommandCall& call) {
    return !call.options.contains(options::FROM_OPTION) && call.options.contains(FILE_OPTION);
}

std::size_t countOf(const CommandCall& call, const char* option) {
    return static_cast<std::size_t>(options::wholeOption(call, option, 0));
}

// The size of a study; none without all of its options.
std::optional<gauge::Design> designOf(const CommandCall& call) {
    if (!call.options.contains(PARTS) && !call.options.contains(OPERATORS) &&
        !call.options.contains(TRIALS)) {
        return std::nullopt;
    }
    const gauge::Design design{.parts = countOf(call, PARTS),
                               .operators = countOf(call, OPERATORS),
                               .trials = countOf(call, TRIALS)};
    if (design.parts == 0 || design.operators == 0 || design.trials == 0) {
        throw tesk5::BadInput{message("STUDY_GUIDE_NO_SIZE")};
    }
    return design;
}

StudyReadings readingsOf(const StudySession& session) {
    StudyReadings data{session.readings(), {}, {}};
    for (std::size_t part = 1; part <= session.design().parts; ++part) {
        data.parts.push_back(std::to_string(part));
    }
    for (std::size_t op = 1; op <= session.design().operators; ++op) {
        data.operators.push_back(std::to_string(op));
    }
    return data;
}

// What people call the access point. Failure: throws tesk5::BadInput where there is none
std::string target() {
    for (const tesk5::Finding& finding : levels::targetFindings(true)) {
        throw tesk5::BadInput{message(finding)};
    }
    return levels::nameOfTarget().utf8();
}

// \return whether all measurements are there
bool isMeasured(GuidedStudy& guided, const CommandCall& call, tesk5::RunContext& context) {
    readings::SamplingPlan plan = levels::planOfParameters();
    plan.mayEndEarly = false; // each measurement of a study is worth the same
    const bool isWhole = guided.run(
        [&] {
            readings::LevelSource source(levels::interfaceOf(call.devices.front()),
                                         levels::targetOfParameters());
            return readings::measure(source, plan, nullptr,
                                     [&context] { return context.stopRequest.raised(); });
        },
        context);
    if (isWhole) {
        options::printLines(context, {""});
    }
    return isWhole;
}

int runGuided(const CommandCall& call, tesk5::RunContext& context) {
    const StudyOutput output = outputOf(call);
    GuidedStudy guided(options::givenOption(call, FILE_OPTION),
                       {.ofOnePart = false, .design = designOf(call)}, target());
    if (!isMeasured(guided, call, context)) {
        return tesk5::TestResult::USERABORTED().value();
    }
    finish(readingsOf(guided.session()), output, &guided.file(), &guided.session(), call, context);
    return 0;
}

// The size of a short study that --trials gives.
StudySize sizeOfTypeOne(const CommandCall& call) {
    StudySize size{.ofOnePart = true, .design = {}};
    if (call.options.contains(TRIALS)) {
        size.design = gauge::Design{.parts = 1, .operators = 1, .trials = countOf(call, TRIALS)};
        if (size.design->trials < gauge::TYPE_ONE_READINGS) {
            throw tesk5::BadInput{
                message("TYPE1_TOO_FEW_TRIALS",
                        {{"Least", gauge::TYPE_ONE_READINGS}, {"Count", size.design->trials}})};
        }
    }
    return size;
}

// The readings of one part in the table that --from names.
StudyReadings tableOfOnePart(const CommandCall& call) {
    // The test for a drift compares each reading with each other one.
    constexpr std::size_t MOST_READINGS = 2000;
    const std::string path = options::neededOption(call, options::FROM_OPTION, "study");
    const tables::TableFile file(path);
    const std::vector<double> levels = file.numbers(file.column(levelColumns()));
    if (levels.size() < gauge::TYPE_ONE_READINGS) {
        throw tesk5::BadInput{message(
            "TYPE1_TOO_FEW",
            {{"File", path}, {"Least", gauge::TYPE_ONE_READINGS}, {"Count", levels.size()}})};
    }
    if (levels.size() > MOST_READINGS) {
        throw tesk5::BadInput{message(
            "TYPE1_TOO_MANY", {{"File", path}, {"Most", MOST_READINGS}, {"Count", levels.size()}})};
    }
    return readingsOfOnePart(levels);
}

int runTypeOne(const CommandCall& call, tesk5::RunContext& context) {
    for (const char* const option : {PARTS, OPERATORS, PAGE}) {
        if (call.options.contains(option)) {
            throw tesk5::BadInput{message("TYPE1_WITHOUT", {{"Option", option}})};
        }
    }
    const std::optional<double> reference = options::levelOption(call, options::REFERENCE);
    if (!reference) {
        throw tesk5::BadInput{message("TYPE1_NEEDS_REFERENCE")};
    }
    const StudyOutput output = outputOf(call);
    if (isGuided(call)) {
        GuidedStudy guided(options::givenOption(call, FILE_OPTION), sizeOfTypeOne(call), target());
        if (!isMeasured(guided, call, context)) {
            return tesk5::TestResult::USERABORTED().value();
        }
        finishOfOnePart(readingsOf(guided.session()), *reference, output, &guided.file(),
                        &guided.session(), call, context);
        return 0;
    }
    const StudyReadings data = tableOfOnePart(call);
    const std::optional<tesk5::ReportFile> file = fileOf(call, FILE_OPTION);
    finishOfOnePart(data, *reference, output, file ? &*file : nullptr, nullptr, call, context);
    return 0;
}

int runStudy(const CommandCall& call, tesk5::RunContext& context) {
    options::refuseSharedFiles(call, {options::FROM_OPTION, FILE_OPTION, CSV, PAGE});
    if (call.options.contains(TYPE_ONE)) {
        return runTypeOne(call, context);
    }
    if (isGuided(call)) {
        return runGuided(call, context);
    }
    const StudyReadings data =
        studyReadings(options::neededOption(call, options::FROM_OPTION, "study"));
    const StudyOutput output = outputOf(call);
    const std::optional<tesk5::ReportFile> file = fileOf(call, FILE_OPTION);
    finish(data, output, file ? &*file : nullptr, nullptr, call, context);
    return 0;
}

} // namespace

tesk5::ModuleCommand studyCommand() {
    constexpr const char* GUIDED_EXAMPLE =
        "study --parts 10 --operators 3 --trials 3 --set SSID=Lab --file bench.study.json";
    return {
        .name = "study",
        .arguments = "",
        .help = "HELP_STUDY",
        .examples = {GUIDED_EXAMPLE,
                     "study --from readings.csv --tolerance 20 --file bench.study.json",
                     options::REFERENCE_EXAMPLE},
        .run = &runStudy,
        .options = {{options::FROM_OPTION, "FILE", "HELP_FROM", options::FROM_EXAMPLE},
                    {TOLERANCE, "DB", "HELP_TOLERANCE", "study --from readings.csv --tolerance 20"},
                    {TYPE_ONE, nullptr, "HELP_TYPE1", options::REFERENCE_EXAMPLE},
                    {options::REFERENCE, "LEVEL", "HELP_REFERENCE", options::REFERENCE_EXAMPLE},
                    {FILE_OPTION, "FILE", "HELP_STUDY_FILE",
                     "study --from readings.csv --file bench.study.json"},
                    {CSV, "FILE", "HELP_STUDY_CSV",
                     "study --file bench.study.json --set SSID=Lab --csv readings.csv"},
                    {PAGE, "FILE", "HELP_STUDY_PAGE",
                     "study --from readings.csv --page bench.html"},
                    {.name = PARTS,
                     .argument = "N",
                     .help = "HELP_PARTS",
                     .example = GUIDED_EXAMPLE,
                     .range = tesk5::NumberRange{2, int{MOST_PARTS}, ""}},
                    {.name = OPERATORS,
                     .argument = "N",
                     .help = "HELP_OPERATORS",
                     .example = GUIDED_EXAMPLE,
                     .range = tesk5::NumberRange{1, int{MOST_OPERATORS}, ""}},
                    {.name = TRIALS,
                     .argument = "N",
                     .help = "HELP_TRIALS",
                     .example = GUIDED_EXAMPLE,
                     .range = tesk5::NumberRange{2, int{MOST_TRIALS}, ""}}},
        .parameters = {"SSID", "BSSID", "Band", "Samples", "MaxSeconds"},
        .test = "SignalLevelTest",
        .needsDevices = &isGuided};
}

} // namespace study
