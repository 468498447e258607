#include "SignalCommands.h"

#include <calibrate/CalibrateCommand.h>
#include <limits/LimitsCommand.h>
#include <networks/NetworksCommand.h>
#include <records/FormatOption.h>
#include <study/StudyCommand.h>
#include <watch/WatchCommand.h>

namespace {

// On whose devices the commands work.
constexpr const char* LEVEL_TEST = "SignalLevelTest";

} // namespace

std::span<const tesk5::ModuleCommand> signalCommands() {
    static const tesk5::ModuleCommand commands[] = {
        watchCommand(),
        {.name = "networks",
         .arguments = "",
         .help = "HELP_NETWORKS",
         .examples = {"networks", "networks --set Band=5 --format csv"},
         .run = &networks::run,
         .options = {records::formatOption("networks --format csv")},
         .parameters = {"SSID", "BSSID", "Band"},
         .test = LEVEL_TEST},
        study::studyCommand(),
        limits::limitsCommand(),
        calibrate::calibrateCommand(),
    };
    return commands;
}
