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

class SystemDllDeathTest : public testing::Test {
protected:
    void SetUp() override {
        if (!systemDllIsSimulated()) {
            GTEST_FAIL() << "the simulator's wlanapi.dll must stand in the system directory";
        }
    }
};

TEST_F(SystemDllDeathTest, ExportsWhatIsNotSimulatedAndSaysSo) {
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

TEST_F(SystemDllDeathTest, EndsTheProcessForAnEnvironmentThatCannotBeUsed) {
    const auto scenarioFile = [](const wchar_t* name, const std::string& text) {
        const std::filesystem::path file = std::filesystem::path(testing::TempDir()) / name;
        std::ofstream(file, std::ios::binary) << text;
        return file;
    };
    const struct {
        const wchar_t* variable;
        std::filesystem::path value;
        const char* message;
    } rows[] = {
        {L"RADIOSIM_SCENARIO",
         scenarioFile(L"sc\u00E9nario.json", R"({"interfaces": [{"rssi": 500}]})"),
         "radiosim: .*nario.json: /interfaces/0/rssi: 500 is out of range: a whole number from "
         "-200 to 200 was expected. Mend the file"},
        {L"RADIOSIM_SCENARIO", scenarioFile(L"no_json.json", "{\n]"),
         "radiosim: .*no_json.json: line 2, column 1: syntax error"},
        {L"RADIOSIM_SCENARIO", L"no\\such.json", "such.json: the file cannot be read"},
        {L"RADIOSIM_TRACE", L"no\\such\\trace", "trace: the trace cannot be written. Name a file"},
    };
    for (const auto& row : rows) {
        // In a process of its own: the first call is what counts.
        const auto firstCall = [&row] {
            SetEnvironmentVariableW(row.variable, row.value.c_str());
            DWORD version = 0;
            HANDLE handle = nullptr;
            api().WlanOpenHandle(2, nullptr, &version, &handle);
        };
        EXPECT_EXIT(firstCall(), testing::ExitedWithCode(64), row.message);
    }
}

} // namespace
} // namespace nativewifi
