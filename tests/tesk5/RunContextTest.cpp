// Two runs side by side: the second is started by a test function of the first.
#include "FrameworkTest.h"

#include <nlohmann/json.hpp>

#include <thread>

namespace test {

namespace {

using tesk5::RunContext;

// For the two test functions below, which get only a device.
RunContext* g_inner = nullptr;
int g_innerExit = -1;

TestResult warnAndStop(const DiagDevice& /*device*/) {
    DiagModule::warning(DiagModule::createEvent("PLAIN"), "modules/inner.cpp", 1);
    DiagModule::requestAbort();
    RunContext::current().stopRequest.raise();
    return DiagModule::checkForStop() ? TestResult::WARN() : TestResult::INTERNALERROR();
}

TestResult startTheOther(const DiagDevice& /*device*/) {
    {
        const RunContext::Scope scope(*g_inner);
        g_innerExit = DiagModule::start();
    }
    DiagModule::error(DiagModule::createEvent("WEAK"), "modules/outer.cpp", 2);
    return DiagModule::checkForStop() ? TestResult::USERABORTED() : TestResult::PASS();
}

class SideBySide : public FrameworkTest {
protected:
    SideBySide() { g_inner = &m_inner; }
    ~SideBySide() override { g_inner = nullptr; }

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
    const auto wireless = DeviceCapability::Wireless();
    {
        const RunContext::Scope scope(m_inner);
        DiagModule::setVersion(1, 2, "3");
        DiagModule::createTest("A", wireless, &warnAndStop);
        DiagModule::createTest("B", wireless, &warnAndStop);
    }
    m_inner.arguments = {"run", "--devices", file("devices.json"), "--json", file("inner.json")};
    DiagModule::createTest("A", wireless, &startTheOther);
    DiagModule::createTest("C", wireless,
                           [](const DiagDevice&) { return TestResult::COMPLETED(); });
    EXPECT_EQ(start({"run", "--json", file("outer.json")}), 0);

    EXPECT_EQ(g_innerExit, TestResult::USERABORTED().value());
    const nlohmann::json inner = report("inner.json");
    EXPECT_EQ(inner["module"]["version"], "1.2");
    ASSERT_EQ(inner["results"].size(), 2U);
    EXPECT_EQ(inner["results"][0]["result"], "WARN");
    ASSERT_EQ(inner["results"][0]["events"].size(), 1U);
    EXPECT_EQ(inner["results"][0]["events"][0]["key"], "PLAIN");
    EXPECT_EQ(inner["results"][1]["result"], "USERABORTED");

    const nlohmann::json outer = report("outer.json");
    EXPECT_EQ(outer["module"]["version"], "6.5");
    ASSERT_EQ(outer["results"].size(), 2U);
    EXPECT_EQ(outer["results"][0]["result"], "PASS");
    ASSERT_EQ(outer["results"][0]["events"].size(), 1U);
    EXPECT_EQ(outer["results"][0]["events"][0]["key"], "WEAK");
    EXPECT_EQ(outer["results"][1]["result"], "COMPLETED");
}

TEST_F(SideBySide, EachWritesItsOwnLanguageAndColoursToItsOwnStreams) {
    {
        const RunContext::Scope scope(m_inner);
        DiagModule::createTest("A", DeviceCapability::Wireless(), &warnAndStop);
    }
    m_inner.arguments = {"run",   "--devices",   file("devices.json"), "--color=always",
                         "--log", file("a.log"), "--language=de"};
    DiagModule::createTest("A", DeviceCapability::Wireless(), &startTheOther);
    EXPECT_EQ(start({"run"}), 0);
    EXPECT_THAT(m_innerResults.text(), HasSubstr("\x1b[33mWARN\x1b[0m"));
    EXPECT_THAT(m_innerResults.text(), HasSubstr("Testläufe: 1"));
    EXPECT_THAT(output(), HasSubstr("Runs: 1 (1 PASS)"));
    EXPECT_THAT(output(), Not(HasSubstr("\x1b")));

    m_inner.arguments = {"nonsense", "--language=de"};
    {
        const RunContext::Scope scope(m_inner);
        EXPECT_EQ(DiagModule::start(), 64);
    }
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
