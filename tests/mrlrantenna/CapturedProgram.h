// The whole program against a simulated radio, its captures and their replays.
#pragma once

#include <support/TemporaryFolder.h>
#include <support/VirtualClock.h>

#include <networkadapters/MachineCheck.h>

#include <radiosim/Engine.h>

#include <gmock/gmock.h>

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace test {

/// All that a host sees of one command.
struct Seen {
    int exitValue = 0;
    std::string output;
    std::string errors;
    std::string report; ///< in JSON
    std::string log;

    friend bool operator==(const Seen&, const Seen&) = default;
};
void PrintTo(const Seen& seen, std::ostream* out);

class CapturedProgram : public testing::Test {
protected:
    /// The parameters are the process's own: other tests find them as they were.
    void TearDown() override;

    /// Carries out a command. With `logged` it writes a log, and a run or a replay a report.
    Seen start(std::vector<std::string> arguments, bool logged = true);
    /// The same on a radio of its own, and captured.
    Seen capture(const radiosim::Scenario& scenario, std::vector<std::string> arguments);
    /// Replays what capture() wrote; there is no radio then.
    Seen replay(std::vector<std::string> more = {});

    std::string file(const char* name) const { return m_folder.file(name); }
    std::string captured() const { return bytesOfFile(file("c.jsonl")); }
    void writeCapture(const std::string& text) const;

private:
    TemporaryFolder m_folder;
    networkadapters::ScopedMachine m_noMachine{std::filesystem::path()};
};

} // namespace test
