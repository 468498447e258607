// A command about measurements in files, called as the framework calls it.
#pragma once

#include <support/CapturedStream.h>
#include <support/TemporaryFolder.h>

#include <tesk5/ModuleCommand.h>
#include <tesk5/RunContext.h>

#include <mrl/Files.h>
#include <mrl/System.h>

#include <gtest/gtest.h>

namespace test {

class MeasurementCommand : public testing::Test {
protected:
    using Options = std::map<std::string, std::string, std::less<>>;

    /// The path of a new file with `text`.
    std::string fileWith(std::string_view text) {
        std::string path = m_folder.file("input-" + std::to_string(++m_files) + ".csv");
        mrl::FileToWrite(mrl::System::path(path)).write(text);
        return path;
    }
    std::string outputFile(std::string_view name) const { return m_folder.file(name); }

    /// The process's exit value; what the command wrote is then in output().
    int call(const tesk5::ModuleCommand& command, const Options& options) {
        const tesk5::RunContext::Scope scope(m_context);
        tesk5::CommandCall call;
        call.options = options;
        m_output.clear();
        return command.run(call, m_context);
    }

    /// The line with which the command refuses its input.
    std::string refusalOf(const tesk5::ModuleCommand& command, const Options& options) {
        try {
            call(command, options);
        } catch (const tesk5::BadInput& refusal) {
            EXPECT_EQ(m_output.text(), "");
            return refusal.line;
        }
        ADD_FAILURE() << "the command refused nothing";
        return {};
    }

    const std::string& output() const { return m_output.text(); }

private:
    TemporaryFolder m_folder;
    int m_files = 0;
    mrl::OutputStream m_stream{mrl::OutputStream::Target::standardOutput};
    CapturedStream m_output{m_stream};
    tesk5::Registry m_registry;
    tesk5::RunContext m_context{m_registry, tesk5::Language::ofProcess(), m_stream, m_stream};
};

} // namespace test
