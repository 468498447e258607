// The live view in its terminal: looks at the radio, draws, and follows keys until it ends.
#pragma once

#include <readings/Target.h>
#include <watch/Terminal.h>

#include <nativewifi/WlanTypes.h>

#include <functional>
#include <optional>
#include <string>

namespace watch {

/// What a live view is of.
struct ViewPlan {
    GUID interfaceGuid{};
    std::string adapter;                    ///< as people call it
    std::optional<readings::Target> target; ///< nothing for the list of all networks
    std::optional<Moment> longest;          ///< how long it lasts
    bool colours = true;
};

/// Why a view has ended.
enum class Ending { QUIT, OVER, ENDED_BY_SYSTEM };

/// Shows the view until q or Ctrl+C is pressed, the time is over, the terminal has ended, or `stop`
/// says so, which is asked ten times a second at least.
/// Threads: the caller's, and one for the tone
Ending showLiveView(Terminal& terminal, const ViewPlan& plan, const std::function<bool()>& stop);

} // namespace watch
