// What the simulator's Wlanapi.dll does beyond the contract: its other exports, and its refusal to
// start when the environment that was requested cannot be used.
#include "SystemDll.h"

#include <nativewifi/Api.h>

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

namespace nativewifi {
namespace {

TEST(SystemDll, ExportsWhatIsNotSimulatedAndSaysSo) {
    if (!systemDllIsSimulated()) {
        GTEST_FAIL() << "the simulator's wlanapi.dll must stand in the system directory";
    }
    const HMODULE module = GetModuleHandleW(L"Wlanapi.dll");
    ASSERT_NE(module, nullptr);
    for (const char* name :
         {"WlanConnect", "WlanDisconnect", "WlanGetProfile", "WlanGetProfileList", "WlanSetProfile",
          "WlanDeleteProfile", "WlanGetInterfaceCapability", "WlanHostedNetworkStartUsing",
          "WlanQueryAutoConfigParameter", "WlanIhvControl", "WFDOpenHandle"}) {
        const auto function =
            reinterpret_cast<DWORD (*)()>(reinterpret_cast<void*>(GetProcAddress(module, name)));
        ASSERT_NE(function, nullptr) << name;
        EXPECT_EQ(function(), ERROR_NOT_SUPPORTED) << name;
    }
    const auto allocate = reinterpret_cast<PVOID (*)(DWORD)>(
        reinterpret_cast<void*>(GetProcAddress(module, "WlanAllocateMemory")));
    ASSERT_NE(allocate, nullptr);
    const PVOID block = allocate(16);
    ASSERT_NE(block, nullptr);
    std::memset(block, 1, 16);
    api().WlanFreeMemory(block);
}

class SystemDllDeathTest : public testing::Test {
protected:
    void SetUp() override {
        if (!systemDllIsSimulated()) {
            GTEST_FAIL() << "the simulator's wlanapi.dll must stand in the system directory";
        }
    }

    /// To be run in a process of its own: the first call is what counts.
    static void firstCallWith(const wchar_t* variable, const std::filesystem::path& value) {
        SetEnvironmentVariableW(variable, value.c_str());
        DWORD version = 0;
        HANDLE handle = nullptr;
        api().WlanOpenHandle(2, nullptr, &version, &handle);
    }

    static std::filesystem::path scenarioFile(const std::string& text) {
        std::filesystem::path file =
            std::filesystem::path(testing::TempDir()) / L"sc\u00E9nario.json";
        std::ofstream(file, std::ios::binary) << text;
        return file;
    }
};

TEST_F(SystemDllDeathTest, EndsTheProcessForAScenarioWithAMistake) {
    const std::filesystem::path file = scenarioFile(R"({"interfaces": [{"rssi": "x"}]})");
    EXPECT_EXIT(firstCallWith(L"RADIOSIM_SCENARIO", file), testing::ExitedWithCode(64),
                "radiosim: .*nario.json: /interfaces/0/rssi: a whole number from -200 to 200 was "
                "expected. Mend the file");
}

TEST_F(SystemDllDeathTest, EndsTheProcessForAScenarioThatIsNoJson) {
    const std::filesystem::path file = scenarioFile("{\n]");
    EXPECT_EXIT(firstCallWith(L"RADIOSIM_SCENARIO", file), testing::ExitedWithCode(64),
                "radiosim: .*nario.json: line 2, column 1: syntax error");
}

TEST_F(SystemDllDeathTest, EndsTheProcessForAScenarioThatIsNotThere) {
    EXPECT_EXIT(firstCallWith(L"RADIOSIM_SCENARIO", L"no\\such.json"), testing::ExitedWithCode(64),
                "such.json: the file cannot be read");
}

TEST_F(SystemDllDeathTest, EndsTheProcessForATraceThatCannotBeWritten) {
    EXPECT_EXIT(firstCallWith(L"RADIOSIM_TRACE", L"no\\such\\trace"), testing::ExitedWithCode(64),
                "trace: the trace cannot be written. Name a file");
}

} // namespace
} // namespace nativewifi
