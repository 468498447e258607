// The module's interface to the framework: registration, reports of a running test, and start().
#pragma once

#include <tesk5/Event.h>
#include <tesk5/LocalizedString.h>
#include <tesk5/Measurement.h>
#include <tesk5/Parameter.h>
#include <tesk5/Series.h>
#include <tesk5/TeskException.h>
#include <tesk5/Test.h>

#include <optional>

namespace tesk5 {

/// All operations are static and work on RunContext::current(): in a program that is the process's
/// own context. Creation may happen during static initialisation. Threads: any for checkForStop()
/// and requestAbort(); everything else belongs to the thread that runs the module.
class DiagModule {
public:
    /// Registers a test; the framework owns it.
    /// Failure: throws TeskException for a name that is registered already
    static Test* createTest(const TeskString& name, const DeviceCapability& capability,
                            Test::Function function);
    /// Registers a parameter; the framework owns it.
    /// \param multiValued whether several values may be given
    /// \param optional whether a test that has it may run without one given
    /// Failure: throws TeskException for a name that is registered already
    static Parameter* createParameter(const TeskString& name, const DataType& type,
                                      const TeskString& defaultValue, bool multiValued,
                                      bool optional);
    /// Registers an event; the framework owns it.
    /// Failure: throws TeskException for a key that is registered already
    static Event* createEvent(const TeskString& key);
    /// Registers the key of a text; the framework owns the object. Nothing is looked up yet.
    /// Failure: throws TeskException for a key that is registered already
    static LocalizedString* createLocalizedString(const TeskString& key);

    /// The process's arguments in UTF-8, the program's name first. They are copied.
    static void setCmdLineArgs(int argc, const char** argv);
    static void setVersion(unsigned major, unsigned minor, const TeskString& build);
    /// What start() calls before it reads the tests' parameters.
    static void setModuleInitCallback(void (*callback)());

    /// Carries out the command line.
    /// \return the process's exit value: 0 when every result is PASS or COMPLETED, else the value
    /// of the worst; 64 for a command line or an input that cannot be used, with nothing run and
    /// nothing overwritten; 65 when a replay was asked for what its capture does not have; 74 when
    /// a part of the output could not be written and no report was Failure: exceptions that leave a
    /// test function pass through, but for TeskException
    static int start();

    /// Raises `event` with its variables as they are now.
    /// \param sourceFile path of the source file inside the repository
    static void warning(Event* event, const TeskString& sourceFile, int line);
    static void error(Event* event, const TeskString& sourceFile, int line);

    /// Records a measurement; console, reports and event stream show it with its limits. Outside a
    /// test function it is dropped, as events are.
    static void measured(Measurement measurement);
    /// Records what else could have been measured.
    static void surveyed(Survey survey);
    /// Begins a series, or replaces what is known of it besides its points: its median, at the end.
    static void follows(Series::Head head);
    /// Records a point of the series of that name. Event streams have it at once; reports draw the
    /// first Series::MOST_POINTS over time and say how many were left out.
    /// \param attributes what else is known of the reading: its source, its channel
    /// \param seconds since the test function was called; nothing: now
    static void sampled(const TeskString& series, const Number& value,
                        Event::Variables attributes = {}, std::optional<double> seconds = {});
    /// Has the framework examine the device after the current test, unless its result is PASS, and
    /// attach the problems that it finds to the run. For a test that could not get the data that it
    /// shows or rates.
    static void requestAdvice();
    /// Shows what the test does now.
    /// \param key of the text
    /// \param longestSeconds the longest that the test can still take; nothing when a person ends
    /// it
    static void progresses(const TeskString& key, std::optional<double> longestSeconds);

    /// Whether the run is to end (Ctrl+C, Ctrl+Break). Cheap.
    static bool checkForStop();
    /// Ends the run after the current test function; does not make checkForStop() true.
    static void requestAbort();
};

} // namespace tesk5
