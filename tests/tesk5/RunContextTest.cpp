// Two runs side by side: the second is started by a test function of the first.
#include "FrameworkTest.h"

#include <nlohmann/json.hpp>

#include <thread>

namespace test {

namespace {

using tesk5::RunContext;

TestResult warnAndStop(const DiagDevice& /*device*/) {
    DiagModule::warning(DiagModule::createEvent("PLAIN"), "modules/inner.cpp", 1);
    DiagModule::requestAbort();
    RunContext::current().stopRequest.raise();
    return DiagModule::checkForStop() ? TestResult::WARN() : TestResult::INTERNALERROR();
}

class SideBySide : public OwnTexts {
protected:
    SideBySide() {
        registerTest("A", [this](const DiagDevice&) {
            EXPECT_EQ(startInner(), TestResult::USERABORTED().value());
            DiagModule::error(DiagModule::createEvent("WEAK"), "modules/outer.cpp", 2);
            return DiagModule::checkForStop() ? TestResult::USERABORTED() : TestResult::PASS();
        });
        const RunContext::Scope scope(m_inner);
        DiagModule::setVersion(1, 2, "3");
        DiagModule::createTest("A", DeviceCapability::Wireless(), &warnAndStop);
        DiagModule::createTest("B", DeviceCapability::Wireless(), &warnAndStop);
    }

    int startInner() {
        const RunContext::Scope scope(m_inner);
        return DiagModule::start();
    }
    nlohmann::json report(const char* name) const {
        return nlohmann::json::parse(bytesOfFile(file(name)));
    }

    tesk5::Registry m_innerRegistry;
    tesk5::Language m_innerLanguage;
    mrl::OutputStream m_innerOutput{mrl::OutputStream::Target::standardOutput};
    mrl::OutputStream m_innerErrors{mrl::OutputStream::Target::standardError};
    CapturedStream m_innerResults{m_innerOutput};
    CapturedStream m_innerFailures{m_innerErrors};
    RunContext m_inner{m_innerRegistry, m_innerLanguage, m_innerOutput, m_innerErrors};
};

TEST_F(SideBySide, RunsShareNothing) {
    m_inner.arguments = {"run", "--devices", file("devices.json"), "--json", file("inner.json")};
    registerTest("C", TestResult::COMPLETED());
    EXPECT_EQ(start({"run", "--json", file("outer.json")}), 0);
    const struct {
        const char* file;
        const char* version;
        const char* event;
        const char* results[2];
    } rows[] = {
        {"inner.json", "1.2", "PLAIN", {"WARN", "USERABORTED"}},
        {"outer.json", "6.5", "WEAK", {"PASS", "COMPLETED"}},
    };
    for (const auto& row : rows) {
        const nlohmann::json written = report(row.file);
        EXPECT_EQ(written["module"]["version"], row.version);
        ASSERT_EQ(written["results"].size(), 2U);
        EXPECT_EQ(written["results"][0]["result"], row.results[0]);
        ASSERT_EQ(written["results"][0]["events"].size(), 1U);
        EXPECT_EQ(written["results"][0]["events"][0]["key"], row.event);
        EXPECT_EQ(written["results"][1]["result"], row.results[1]);
    }
}

TEST_F(SideBySide, EachWritesItsOwnLanguageAndColoursToItsOwnStreams) {
    write("tesk5", "nl", R"({"CONSOLE_RUNS_TALLY": "Tests: {Count}"})");
    m_inner.arguments = {"run",   "--devices",   file("devices.json"), "--color=always",
                         "--log", file("a.log"), "--language=nl"};
    EXPECT_EQ(start({"run"}), 0);
    EXPECT_THAT(m_innerResults.text(), HasSubstr("\x1b[33mWARN\x1b[0m"));
    EXPECT_THAT(m_innerResults.text(), HasSubstr("Tests: 2"));
    EXPECT_THAT(output(), HasSubstr("Runs: 1 (1 PASS)"));
    EXPECT_THAT(output(), Not(HasSubstr("\x1b")));

    m_inner.arguments = {"nonsense", "--language=nl"};
    EXPECT_EQ(startInner(), 64);
    EXPECT_THAT(m_innerFailures.text(), HasSubstr("nonsense"));
    EXPECT_EQ(errors(), "");
}

TEST_F(SideBySide, AScopeIsThatOfItsThread) {
    RunContext* elsewhere = nullptr;
    std::thread([&elsewhere] { elsewhere = &RunContext::current(); }).join();
    EXPECT_NE(elsewhere, &RunContext::current());
    EXPECT_EQ(&elsewhere->registry, &tesk5::Registry::instance());
    {
        const RunContext::Scope scope(m_inner);
        EXPECT_EQ(&RunContext::current(), &m_inner);
    }
    EXPECT_NE(&RunContext::current(), &m_inner);
}

} // namespace

} // namespace test
