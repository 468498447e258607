// Everything that belongs to one run: the module's registration and description, the language, the
// streams, and the requests to end it. Several can exist side by side.
#pragma once

#include <tesk5/Language.h>
#include <tesk5/Registry.h>
#include <tesk5/RunIdentity.h>
#include <tesk5/TeskString.h>

#include <mrl/LineInput.h>
#include <mrl/OutputStream.h>

#include <atomic>
#include <string>
#include <vector>

namespace tesk5 {

class TestRecorder;

/// The version of the module.
struct ModuleVersion {
    unsigned major = 0;
    unsigned minor = 0;
    TeskString build;

    /// "6.5": as reports and the command line write it.
    std::string text() const { return std::to_string(major) + "." + std::to_string(minor); }
};

/// The request that a run should end.
///
/// Raised by Ctrl+C or Ctrl+Break during a run, or by a program that hosts the framework; stays
/// until it is cleared. Threads: any, and signal handlers.
class StopRequest {
public:
    void raise() { m_raised.store(true, std::memory_order_relaxed); }
    void clear() { m_raised.store(false, std::memory_order_relaxed); }
    bool raised() const { return m_raised.load(std::memory_order_relaxed); }

private:
    std::atomic<bool> m_raised{false};
    static_assert(std::atomic<bool>::is_always_lock_free, "a signal handler sets it");
};

/// Threads: `stopRequest` and `abortRequested` belong to any, the rest to the run's thread.
class RunContext {
public:
    /// \param all what the module has registered
    /// The parameters outlive the context.
    explicit RunContext(Registry& all, Language& texts = Language::ofProcess(),
                        mrl::OutputStream& results = mrl::cout,
                        mrl::OutputStream& failures = mrl::cerr)
        : registry(all), language(texts), output(results), errors(failures) {}
    RunContext(const RunContext&) = delete;
    RunContext& operator=(const RunContext&) = delete;
    ~RunContext() = default;

    Registry& registry;
    Language& language;
    mrl::OutputStream& output;
    mrl::OutputStream& errors;
    mrl::LineInput* input = &mrl::LineInput::ofProcess(); ///< answers to commands that ask

    std::string program;                ///< file name of the program, as typed
    std::vector<std::string> arguments; ///< what follows it
    ModuleVersion version;
    RunIdentity identity; ///< of the run that takes place; without an identifier before it
    /// Reads the identity of the PC; null: it is asked of the system.
    std::optional<PcIdentity> (*readPc)() = nullptr;
    bool windowCloses = false; ///< started by a double click: the console ends with the program
    void (*initialize)() = nullptr; ///< the module's initialisation callback

    StopRequest stopRequest;                  ///< ends the run and what a test does
    std::atomic<bool> abortRequested = false; ///< ends the run after the current test
    TestRecorder* recorder = nullptr;         ///< the innermost; null outside a test

    /// The context that the static operations of DiagModule reach: that of the calling thread's
    /// innermost Scope, else the process's own. The process's own is needed because a test function
    /// gets no context, and because any thread may ask for the end of the run.
    static RunContext& current();

    /// Puts a context, and its language, in the place of the process's own for the calling thread.
    /// Scopes nest.
    class Scope {
    public:
        explicit Scope(RunContext& context);
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope();

    private:
        RunContext* m_outer;
        Language::Scope m_language;
    };
};

} // namespace tesk5
