// Two runs side by side: the second is started by a test function of the first.
#include "FrameworkTest.h"

#include <nlohmann/json.hpp>

#include <thread>

namespace test {

namespace {

using tesk5::DiagDevice;
using tesk5::DiagModule;
using tesk5::RunContext;
using tesk5::TestResult;

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
    RunContext m_inner{m_innerRegistry};
};

TEST_F(SideBySide, RunsShareNothing) {
    const auto wireless = tesk5::DeviceCapability::Wireless();
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
