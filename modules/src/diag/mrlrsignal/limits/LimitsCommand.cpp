#include <limits/LimitsCommand.h>

#include <levels/LimitsId.h>
#include <levels/ModuleObjects.h>
#include <limits/ReportLevels.h>
#include <options/CommandOptions.h>
#include <readings/DriverNumbers.h>
#include <study/StudyFile.h>
#include <tables/TableFile.h>
#include <tolerance/Proposal.h>

#include <tesk5/Number.h>
#include <tesk5/ReportFile.h>
#include <tesk5/RunContext.h>
#include <tesk5/Texts.h>
#include <tesk5/TomlFile.h>

#include <mrl/Files.h>
#include <mrl/System.h>
#include <mrl/Unicode.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace limits {

namespace {

using tesk5::BadInput;
using tesk5::CommandCall;
using tesk5::message;
using tesk5::Number;
using tesk5::quantity;
using tesk5::Value;
using tolerance::Method;
using tolerance::Proposal;
using tolerance::ProposalOptions;
using tolerance::ProposedLimit;

constexpr const char* BAD = "--bad";
constexpr const char* GUARD_BAND = "--guard-band";
constexpr const char* STUDY = "--study";
constexpr const char* OUT_FILE = "--out";
constexpr const char* NAME = "--name";
constexpr const char* REVISION = "--revision";
constexpr int GREATEST_REVISION = 999'999;
constexpr int WIDEST_GUARD_BAND = 20;
// A unit that is just on a limit is measured further away than this in 5 % of all cases on either
// side (JCGM 106:2012, annex A).
constexpr double GUARD_FACTOR = 1.645;
Value level(double dbm) {
    return quantity(Number::rounded(dbm, 1), "dBm");
}

Value decibels(double number) {
    return quantity(Number::rounded(number, 1), "dB");
}

Value percent(double share) {
    return quantity(Number::rounded(100 * share, 1), "%");
}

// The file has tenths of a dB, and the limits follow from what is in it.
double roundedUp(double guardBand) {
    constexpr double ROUNDING_ERROR = 1e-6;
    return std::ceil(guardBand * 10 - ROUNDING_ERROR) / 10;
}

// A promise: whole percents.
Value wholePercent(double share) {
    return quantity(Number::rounded(100 * share, 0), "%");
}

// The levels of a file or of reports, one a unit.
std::vector<double> levelsIn(const std::string& path) {
    if (namesReports(path)) {
        return levelsInReports(path);
    }
    const tables::TableFile file(path);
    const std::size_t column = file.column(study::levelColumns());
    std::vector<double> levels = file.numbers(column);
    const std::optional<std::size_t> units = file.optionalColumn({"unit", "serial"});
    std::set<std::string> known;
    for (std::size_t row = 0; row < levels.size(); ++row) {
        if (!readings::isLevelInDbm(levels[row])) {
            file.refuse(row, column, "TABLE_NO_LEVEL");
        }
        if (units && *units != column && !known.insert(file.table().text(row, *units)).second) {
            file.refuse(row, *units, "TABLE_UNIT_TWICE");
        }
    }
    return levels;
}

// The sentences about one limit, for the console and the comments of the file alike.
std::vector<std::string> sentencesAbout(const ProposedLimit& limit, const char* parameter,
                                        std::size_t good) {
    const tolerance::LowerLimit& tolerance = limit.tolerance;
    std::vector<std::string> lines;
    lines.push_back(
        message("LIMITS_LEVEL", {{"Parameter", parameter},
                                 {"Level", level(limit.level)},
                                 {"Share", wholePercent(tolerance.promise.share)},
                                 {"Limit", level(tolerance.level)},
                                 {"Confidence", wholePercent(tolerance.promise.confidence)}}));
    lines.push_back(tolerance.method == Method::NORMAL
                        ? message("LIMITS_BY_NORMAL",
                                  {{"Factor", quantity(Number::rounded(tolerance.factor, 2), "")}})
                        : message("LIMITS_BY_RANK", {{"Rank", tolerance.rank}}));
    lines.push_back(message("LIMITS_STOPS_GOOD", {{"StopsBelow", level(limit.stopsBelow)},
                                                  {"Stopped", limit.goodStopped},
                                                  {"Units", good},
                                                  {"Low", percent(limit.ofGood.low)},
                                                  {"High", percent(limit.ofGood.high)}}));
    if (limit.ofNormalGood) {
        lines.push_back(
            message("LIMITS_STOPS_NORMAL", {{"Share", percent(limit.ofNormalGood->value)},
                                            {"Low", percent(limit.ofNormalGood->low)},
                                            {"High", percent(limit.ofNormalGood->high)}}));
    }
    if (limit.ofBad) {
        lines.push_back(message("LIMITS_STOPS_BAD", {{"Share", percent(limit.ofBad->value)},
                                                     {"Low", percent(limit.ofBad->low)},
                                                     {"High", percent(limit.ofBad->high)}}));
    }
    return lines;
}

std::vector<std::string> sentencesAbout(const Proposal& proposal, const tolerance::Promise& warning,
                                        std::size_t good) {
    std::vector<std::string> lines;
    lines.push_back(message("LIMITS_UNITS", {{"Count", good},
                                             {"Mean", level(proposal.mean)},
                                             {"Deviation", decibels(proposal.deviation)}}));
    if (proposal.deviation <= 0) {
        lines.push_back(message("LIMITS_ALL_SAME"));
        return lines;
    }
    lines.push_back(message(proposal.isNormal ? "LIMITS_NORMAL" : "LIMITS_NOT_NORMAL",
                            {{"P", quantity(Number::rounded(proposal.fit.pValue, 3), "")}}));
    const std::size_t needed = tolerance::unitsNeeded(1, warning);
    if (proposal.isNormal && good < needed) {
        lines.push_back(
            message("LIMITS_SHORT_OF_TEST", {{"Needed", needed}, {"Missing", needed - good}}));
    }
    return lines;
}

std::string commented(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text += "# " + mrl::escapeControls(line) + "\n"; // a file name may have a line end in it
    }
    return text;
}

std::string setting(const char* parameter, double value) {
    return std::string(parameter) + " = " + Number::rounded(value, 1).text() + "\n";
}

// The limits of before may be replaced, and what a person or calibrate has written may not.
void refuseOtherSettings(const std::string& path) {
    if (path.empty() || mrl::fileKind(mrl::System::path(path)) != mrl::FileKind::ordinary) {
        return;
    }
    const mrl::Json before = tesk5::readTomlFile(path).root;
    const mrl::Json settings = before.value("parameters", mrl::Json::object());
    const auto isOwn = [](const auto& setting) {
        const std::string_view name = setting.key();
        return name == "WarningLevel" || name == "FailingLevel" || name == "GuardBand" ||
               name == "Limits";
    };
    const auto items = settings.items();
    if (before.size() > before.count("parameters") ||
        !std::all_of(items.begin(), items.end(), isOwn)) {
        throw BadInput{message("LIMITS_FILE_HAS_MORE", {{"File", path}})};
    }
}

class LimitsRun {
public:
    LimitsRun(const CommandCall& call, tesk5::RunContext& context)
        : m_context(context), m_out(options::givenOption(call, OUT_FILE)) {
        options::refuseSharedFiles(call, {options::FROM_OPTION, BAD, STUDY, OUT_FILE});
        refuseOtherSettings(m_out);
        const std::string from = options::neededOption(call, options::FROM_OPTION, "limits");
        m_good = levelsIn(from);
        if (m_good.size() < tolerance::FEWEST_UNITS) {
            throw BadInput{message(
                "LIMITS_TOO_FEW",
                {{"File", from}, {"Least", tolerance::FEWEST_UNITS}, {"Count", m_good.size()}})};
        }
        if (const std::string bad = options::givenOption(call, BAD); !bad.empty()) {
            m_bad = levelsIn(bad);
        }
        chooseGuardBand(call);
        chooseName(call);
    }

    int run() {
        const Proposal proposal = tolerance::propose(m_good, m_bad, m_options);
        std::optional<tesk5::ReportFile> file;
        if (proposal.warning && !m_out.empty()) {
            file.emplace(m_out);
        }
        std::vector<std::string> head = sentencesAbout(proposal, m_options.warning, m_good.size());
        head.insert(head.end(), m_aboutGuardBand.begin(), m_aboutGuardBand.end());
        options::printLines(m_context, head);
        std::string text = commented(head) + "\n[parameters]\n";
        text +=
            add(proposal.warning, proposal.missingForWarning, m_options.warning, "WarningLevel");
        text +=
            add(proposal.failing, proposal.missingForFailing, m_options.failing, "FailingLevel");
        if (!proposal.warning || !isTaken(*proposal.warning, parameters::warningLevel) ||
            (proposal.failing && !isTaken(*proposal.failing, parameters::failingLevel))) {
            return NOTHING_FOUND;
        }
        if (file) {
            const std::string id = levels::limitsId(m_name, m_revision, limitsOf(proposal));
            text += setting("GuardBand", m_options.guardBand);
            text += commented({message("LIMITS_ID")}) + "Limits = \"" + id + "\"\n";
            file->replace(text);
            options::printLines(m_context, {message("LIMITS_NAMED", {{"Limits", id}})});
            options::printLines(m_context, {message("COMMAND_WRITTEN", {{"File", m_out}})});
        }
        return 0;
    }

private:
    static constexpr int NOTHING_FOUND = 1;

    // A given guard band comes before that of a study.
    void chooseGuardBand(const CommandCall& call) {
        const std::optional<double> given = options::decimalOption(
            call, GUARD_BAND, WIDEST_GUARD_BAND, "LIMITS_GUARD_BAND_REFUSED");
        const std::string path = options::givenOption(call, STUDY);
        if (given || path.empty()) {
            m_options.guardBand = roundedUp(given.value_or(0));
            return;
        }
        const double deviation = study::gaugeDeviation(path);
        m_options.guardBand = roundedUp(GUARD_FACTOR * deviation);
        if (m_options.guardBand > WIDEST_GUARD_BAND) {
            throw BadInput{message("LIMITS_GUARD_BAND_REFUSED",
                                   {{"Text", Number::rounded(m_options.guardBand, 1).text()},
                                    {"Greatest", WIDEST_GUARD_BAND}})};
        }
        m_aboutGuardBand.push_back(
            message("LIMITS_GUARD_BAND", {{"GuardBand", decibels(m_options.guardBand)},
                                          {"Deviation", decibels(deviation)},
                                          {"Study", path}}));
    }

    void chooseName(const CommandCall& call) {
        if (const std::string name = options::givenOption(call, NAME); !name.empty()) {
            m_name = name;
        }
        if (!levels::isLimitsName(m_name)) {
            throw BadInput{message("LIMITS_NAME_REFUSED", {{"Text", m_name}})};
        }
        m_revision = options::wholeOption(call, REVISION, m_revision);
    }

    // As the file has them.
    statistics::LevelLimits limitsOf(const Proposal& proposal) const {
        const auto levelOf = [](const std::optional<ProposedLimit>& limit) {
            return limit ? std::optional(limit->level) : std::nullopt;
        };
        return {.warning = levelOf(proposal.warning),
                .failing = levelOf(proposal.failing),
                .guardBand = m_options.guardBand};
    }

    // Whether a run takes the limit; says so where it does not.
    bool isTaken(const ProposedLimit& limit, const tesk5::Parameter* parameter) const {
        const tesk5::NumberRange& range = parameter->range();
        if (range.includes(Number::rounded(limit.level, 1))) {
            return true;
        }
        options::printLines(
            m_context,
            {message("LIMITS_OUT_OF_RANGE", {{"Parameter", parameter->name().utf8()},
                                             {"Lowest", quantity(range.lowest, range.unit)},
                                             {"Highest", quantity(range.highest, range.unit)}})});
        return false;
    }

    // Shows what is known about a limit; returns its part of the file.
    std::string add(const std::optional<ProposedLimit>& limit, std::size_t missing,
                    const tolerance::Promise& promise, const char* parameter) {
        if (!limit) {
            const std::string line =
                message("LIMITS_MISSING", {{"Parameter", parameter},
                                           {"Share", wholePercent(promise.share)},
                                           {"Confidence", wholePercent(promise.confidence)},
                                           {"Missing", missing}});
            options::printLines(m_context, {line});
            return commented({line});
        }
        const std::vector<std::string> lines = sentencesAbout(*limit, parameter, m_good.size());
        options::printLines(m_context, {lines.front()});
        options::printLines(m_context, {lines.begin() + 1, lines.end()}, "  ");
        return commented(lines) + setting(parameter, limit->level);
    }

    tesk5::RunContext& m_context;
    std::string m_out;
    std::string m_name = "limits";
    int m_revision = 1;
    std::vector<double> m_good;
    std::vector<double> m_bad;
    std::vector<std::string> m_aboutGuardBand;
    ProposalOptions m_options;
};

int runLimits(const CommandCall& call, tesk5::RunContext& context) {
    return LimitsRun(call, context).run();
}

} // namespace

tesk5::ModuleCommand limitsCommand() {
    return {.name = "limits",
            .arguments = "",
            .help = "HELP_LIMITS",
            .examples = {"limits --from good.csv --out limits.toml",
                         "limits --from good.csv --bad bad.csv --guard-band 1.5",
                         "limits --from reports --out limits.toml"},
            .run = &runLimits,
            .options = {{options::FROM_OPTION, "FILE", "HELP_FROM", options::FROM_EXAMPLE},
                        {BAD, "FILE", "HELP_BAD", "limits --from good.csv --bad bad.csv"},
                        {GUARD_BAND, "DB", "HELP_GUARD_BAND",
                         "limits --from good.csv --guard-band 1.5"},
                        {STUDY, "FILE", "HELP_GUARD_STUDY",
                         "limits --from good.csv --study bench.study.json"},
                        {OUT_FILE, "FILE", "HELP_OUT", "limits --from good.csv --out limits.toml"},
                        {NAME, "NAME", "HELP_LIMITS_NAME",
                         "limits --from good.csv --name Lab --out limits.toml"},
                        {.name = REVISION,
                         .argument = "N",
                         .help = "HELP_REVISION",
                         .example = "limits --from good.csv --revision 2 --out limits.toml",
                         .range = tesk5::NumberRange{1, GREATEST_REVISION, ""}}},
            .parameters = {},
            .test = nullptr};
}

} // namespace limits
