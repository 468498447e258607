// Everything that belongs to one run: the module's registration and description, and the requests
// to end it. Several can exist side by side; the state of a run ends with its context.
#pragma once

#include <tesk5/ModuleVersion.h>
#include <tesk5/Registry.h>
#include <tesk5/StopRequest.h>

#include <atomic>
#include <string>
#include <vector>

namespace tesk5 {

class TestRecorder;

/// Threads: `stopRequest` and `abortRequested` belong to any, the rest to the run's thread.
class RunContext {
public:
    /// \param all what the module has registered; outlives the context
    explicit RunContext(Registry& all) : registry(all) {}
    RunContext(const RunContext&) = delete;
    RunContext& operator=(const RunContext&) = delete;
    ~RunContext() = default;

    Registry& registry;

    std::string program;                ///< file name of the program, as typed
    std::vector<std::string> arguments; ///< what follows it
    ModuleVersion version;
    void (*initialize)() = nullptr; ///< the module's initialisation callback

    StopRequest stopRequest;                  ///< ends the run and what a test does
    std::atomic<bool> abortRequested = false; ///< ends the run after the current test
    TestRecorder* recorder = nullptr;         ///< the innermost; null outside a test

    /// The context that the static operations of DiagModule reach: that of the calling thread's
    /// innermost Scope, else the process's own. The process's own is needed because a test function
    /// gets no context, and because any thread may ask for the end of the run.
    static RunContext& current();

    /// Puts a context in the place of the process's own, for the calling thread. Scopes nest.
    class Scope {
    public:
        explicit Scope(RunContext& context);
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;
        ~Scope();

    private:
        RunContext* m_outer;
    };
};

} // namespace tesk5
