// The whole program by its command line, on the simulated radio, with a person who types.
#pragma once

#include "SignalProgram.h"

#include <mrlrantenna/ModuleTest.h>

#include <networkadapters/NetworkAdapters.h>

#include <support/CapturedStream.h>
#include <support/ScriptedInput.h>

#include <tesk5/Registry.h>
#include <tesk5/RunContext.h>

#include <string>
#include <utility>
#include <vector>

namespace test {

/// The exit value for a command line or an input that is refused.
constexpr int WRONG_USAGE = 64;

class SignalProgramTest : public ModuleTest {
protected:
    SignalProgramTest() { m_context.input = &m_input; }
    ~SignalProgramTest() override {
        for (tesk5::Parameter& parameter : tesk5::Registry::instance().parameters) {
            parameter.reset();
        }
    }

    /// Runs the program with arguments behind its name. \return its exit value
    int program(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "mrlrsignal");
        m_output.clear();
        m_errors.clear();
        return runSignalProgram(arguments);
    }

    /// What the last call of program() wrote.
    const std::string& output() const { return m_output.text(); }
    const std::string& errors() const { return m_errors.text(); }

    ScriptedInput& person() { return m_input; }
    tesk5::RunContext& context() { return m_context; }

private:
    networkadapters::ScopedAdapters m_adapters{
        [] { return std::vector<networkadapters::NetworkAdapter>(); }};
    ScriptedInput m_input;
    tesk5::RunContext m_context{tesk5::Registry::instance()};
    tesk5::RunContext::Scope m_scope{m_context};
    CapturedStream m_output{mrl::cout};
    CapturedStream m_errors{mrl::cerr};
};

} // namespace test
