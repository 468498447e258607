// What the program assumes about the Native Wifi interface beyond its documentation, as checks that
// run on any PC, and against the simulator.
#pragma once

#include <mrl/Json.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace contract {

class Session;

enum class Verdict : std::uint8_t {
    HELD,
    BROKEN,
    NOT_OBSERVABLE, ///< this PC is not in the state that the assumption is about
};

struct Finding {
    Verdict verdict;
    mrl::Json seen; ///< an object; no names of networks and no addresses of access points
};

/// What must be at hand for a check; each includes those before it.
enum class Need : std::uint8_t {
    NOTHING,
    CLIENT,  ///< an open client handle
    ADAPTER, ///< and a wireless interface
};

/// What a check switches, and does only with leave.
enum class Switches : std::uint8_t { NOTHING, SCAN, RADIO };

struct Check {
    const char* id;
    const char* assumption; ///< one sentence
    Need need;
    Switches switches;
    Finding (*look)(Session& session);
};

/// Every check, in the order in which they run.
const std::vector<Check>& checks();

struct Options {
    bool scan = false;  ///< scans may be started
    bool radio = false; ///< the radio may be switched off, and is switched on again
    /// A scan without a notification counts as never ending after this time.
    std::chrono::milliseconds scanLimit{20000};
    /// A radio that does not show its new state by then counts as not switched.
    std::chrono::milliseconds switchLimit{5000};
};

/// Runs one check on nativewifi::api().
/// \param interrupted once it is true, waits end and what was switched is put back
/// Blocks as long as the check takes: at most some seconds beyond the limits of `options`.
/// Threads: one check at a time.
Finding run(const Check& check, const Options& options, const std::atomic<bool>& interrupted);

/// Asks each question that the program asks, once, and captures the answers in `file`, with
/// stand-ins for all names. Changes nothing.
/// Failure: mrl::FileFailure
void captureAnswers(const std::filesystem::path& file);

/// The line of the result file for one check, without its end.
std::string line(const Check& check, const Finding& finding);

/// The word for a verdict in the result file.
const char* word(Verdict verdict);

} // namespace contract
