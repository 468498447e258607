#include <watch/WatchCommand.h>

#include <levels/TargetParameters.h>
#include <records/FormatOption.h>
#include <watch/LevelRecords.h>
#include <watch/LiveView.h>
#include <watch/Notices.h>

#include <tesk5/BadInput.h>
#include <tesk5/ModuleInfo.h>
#include <tesk5/RunContext.h>
#include <tesk5/TestResult.h>
#include <tesk5/Texts.h>

#include <charconv>

namespace watch {

namespace {

constexpr const char* SECONDS_OPTION = "--seconds";
constexpr int LONGEST_SECONDS = 86'400;

using tesk5::CommandCall;
using tesk5::RunContext;

std::optional<Moment> longestOf(const CommandCall& call) {
    const auto given = call.options.find(SECONDS_OPTION);
    if (given == call.options.end()) {
        return std::nullopt;
    }
    int seconds = 0;
    const std::string& text = given->second;
    std::from_chars(text.data(), text.data() + text.size(), seconds);
    return std::chrono::seconds(seconds);
}

std::optional<records::Format> recordsOf(const CommandCall& call, const RunContext& context) {
    const std::optional<records::Format> given = records::formatOf(call);
    if (given) {
        return given;
    }
    return context.output.isTerminal() ? std::nullopt : std::optional(records::Format::JSONL);
}

void refuseBadTarget() {
    for (const tesk5::Finding& finding : levels::targetFindings(false)) {
        throw tesk5::BadInput{tesk5::message(finding)};
    }
}

int writeRecordsOf(const RecordPlan& plan, RunContext& context) {
    const auto say = [&context](const SourceState& state) {
        if (const std::string text = aboutSource(state); !text.empty()) {
            context.errors << std::string(tesk5::moduleInfo().name) + ": " + text + "\n";
            context.errors.flush();
        }
    };
    const bool over = writeRecords(context.output, plan, say,
                                   [&context] { return context.stopRequest.raised(); });
    // Records that were to last longer are not whole.
    return over || !plan.longest ? 0 : tesk5::TestResult::USERABORTED().value();
}

int showView(const ViewPlan& plan, RunContext& context) {
    const std::unique_ptr<Terminal> terminal = openTerminal();
    if (terminal == nullptr) {
        throw tesk5::BadInput{tesk5::message("WATCH_NO_TERMINAL")};
    }
    const Ending ending =
        showLiveView(*terminal, plan, [&context] { return context.stopRequest.raised(); });
    return ending == Ending::ENDED_BY_SYSTEM ? tesk5::TestResult::USERABORTED().value() : 0;
}

int watch(const CommandCall& call, RunContext& context) {
    refuseBadTarget();
    const readings::Target target = levels::targetOfParameters();
    const tesk5::DiagDevice& device = call.devices.front();
    const std::optional<Moment> longest = longestOf(call);
    if (const std::optional<records::Format> format = recordsOf(call, context)) {
        return writeRecordsOf({.interfaceGuid = levels::interfaceOf(device),
                               .target = target,
                               .longest = longest,
                               .format = *format},
                              context);
    }
    const bool named = target.ssid || target.bssid;
    return showView({.interfaceGuid = levels::interfaceOf(device),
                     .adapter = device.name().utf8(),
                     .target = named ? std::optional(target) : std::nullopt,
                     .longest = longest,
                     .colours = call.colours},
                    context);
}

} // namespace

} // namespace watch

tesk5::ModuleCommand watchCommand() {
    return {.name = "watch",
            .arguments = "",
            .help = "HELP_WATCH",
            .examples = {"watch", "watch --set SSID=Lab",
                         "watch --set SSID=Lab --format csv --seconds 60"},
            .run = &watch::watch,
            .options = {records::formatOption("watch --format jsonl"),
                        {.name = watch::SECONDS_OPTION,
                         .argument = "N",
                         .help = "HELP_SECONDS",
                         .example = "watch --seconds 60",
                         .range = tesk5::NumberRange{1, watch::LONGEST_SECONDS, ""}}},
            .parameters = {"SSID", "BSSID", "Band"},
            .test = "SignalLevelTest"};
}
