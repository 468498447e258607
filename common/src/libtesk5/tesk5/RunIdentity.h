// What names a run besides its results: itself, the unit under test, the PC, and the limits and the
// calibration that it was made with.
#pragma once

#include <mrl/Clock.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tesk5 {

/// What a person or a line says of a run: the serial number of the unit, the station. In UTF-8.
struct Tag {
    std::string name;
    std::string value;
};

/// The PC on which a run takes place, in UTF-8. What the system does not say is empty.
struct PcIdentity {
    std::string name;  ///< the computer's
    std::string maker; ///< this and the next two by the firmware
    std::string model;
    std::string serial;
    std::string system; ///< "Windows 11 Pro", "Debian GNU/Linux 13 (trixie)"
    std::string build;  ///< of the system

    /// What is known, in the order above: "name", "maker", ... and the value.
    std::vector<std::pair<std::string, std::string>> facts() const;
    /// Sets what facts() calls `fact`; nothing happens for another name.
    void set(std::string_view fact, std::string value);
};

/// A wireless adapter of the PC, in UTF-8. What the system does not say is empty.
struct AdapterIdentity {
    std::string device; ///< as its property DEVICE_SYSTEM_NAME has it
    std::string driver;
    std::string version; ///< of the driver
    std::string address; ///< "02:00:5e:00:53:01"
};

/// Limits, or a calibration, that a run was made with.
struct InForce {
    enum class Source {
        file,        ///< a file that the command line or the configuration names
        commandLine, ///< its settings
        standard     ///< the defaults of the parameters
    };

    std::string name;
    std::string version; ///< empty without one
    std::string sha256;  ///< 64 lower-case hexadecimal digits; of what was in force
    Source source = Source::standard;
};

/// "file", "commandLine" or "default": as reports write it.
const char* sourceName(InForce::Source source);

struct RunIdentity {
    std::string identifier; ///< of the run; see newRunIdentifier()
    std::vector<Tag> tags;  ///< in the order in which they were given, no name twice
    std::optional<PcIdentity> pc;
    std::vector<AdapterIdentity> adapters;
    std::vector<InForce> limits;
    std::optional<InForce> calibration;

    /// The value of a tag; null without one of that name.
    const std::string* tag(std::string_view name) const;
};

/// A UUID of version 7, in lower case: the milliseconds of `time` since 1970 and 74 random bits, so
/// that identifiers sort by time and no two runs share one.
/// Failure: throws what std::random_device throws when the system has no random numbers
/// Source: RFC 9562, section 5.7
std::string newRunIdentifier(mrl::Clock::UtcTime time);

/// Whether `text` can be a run's identifier: a UUID of version 7 in lower case.
bool isRunIdentifier(std::string_view text);

} // namespace tesk5
