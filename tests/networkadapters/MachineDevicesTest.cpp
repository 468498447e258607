#include <networkadapters/AdapterTexts.h>
#include <networkadapters/MachineDevices.h>
#include <networkadapters/NetworkAdapters.h>

#include <support/SystemText.h>

#include <radiosim/Engine.h>

#include <tesk5/Language.h>
#include <tesk5/Texts.h>

#include <nativewifi/Guid.h>

#include <gmock/gmock.h>

#include <optional>
#include <string>

namespace tesk5 {

// The texts are those of the library alone.
const ModuleInfo& moduleInfo() {
    static const TextPart sharedTexts[] = {networkadapters::adapterTexts()};
    static const ModuleInfo info{
        .name = "example", .builtInTexts = "{}", .sharedTexts = sharedTexts};
    return info;
}

} // namespace tesk5

namespace test {

namespace {

using networkadapters::checkWirelessService;
using networkadapters::devicesAmong;
using networkadapters::NetworkAdapter;
using radiosim::Scenario;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

constexpr const char* FIRST_GUID = "8c2f6b1e-4d37-4a59-9e0b-5f6a7d3c1b20";
constexpr const char* OTHER_GUID = "00000000-1111-2222-3333-abcdefabcdef";

struct MachineDevices : testing::Test {
    MachineDevices() { tesk5::Language::current().set("en"); }

    radiosim::Engine& startRadio(Scenario scenario) {
        m_radio.reset();
        return m_radio.emplace(std::move(scenario));
    }
    radiosim::Engine& radio() { return *m_radio; }
    static Scenario twoInterfaces(std::vector<radiosim::Fault> faults = {}) {
        return {.interfaces = {{.guid = FIRST_GUID, .description = "Wi-Fi Kärte"},
                               {.guid = "11111111-1111-1111-1111-111111111111",
                                .description = "Wi-Fi 2"}},
                .faults = std::move(faults)};
    }
    static NetworkAdapter adapter(const char* name, const char* guid,
                                  bool mobileBroadband = false) {
        return {mrl::String(name), *nativewifi::parseGuid(mrl::String(guid).view()),
                mobileBroadband};
    }
    static std::vector<std::string> namesOf(const tesk5::DeviceList& list) {
        std::vector<std::string> names;
        for (const tesk5::DiagDevice& device : list.devices) {
            names.push_back(device.name().utf8());
        }
        return names;
    }
    void TearDown() override {
        EXPECT_EQ(radio().leaks(), radiosim::Leaks());
        EXPECT_THAT(radio().unfiredFaults(), IsEmpty());
    }

private:
    std::optional<radiosim::Engine> m_radio;
};

TEST_F(MachineDevices, AreTheNativeWifiInterfaces) {
    startRadio(twoInterfaces());
    const auto list = devicesAmong({});
    EXPECT_THAT(namesOf(list), ElementsAre("Wi-Fi Kärte", "Wi-Fi 2"));
    EXPECT_FALSE(list.failure);
    EXPECT_THAT(list.devices[0].capability().names(), ElementsAre("Wireless", "NetworkCard"));
    EXPECT_THAT(
        list.devices[0].properties(),
        ElementsAre(Pair("DeviceSystemName", "\\DEVICE\\{8C2F6B1E-4D37-4A59-9E0B-5F6A7D3C1B20}"),
                    Pair("wlanAPISupported", "true")));
    EXPECT_THAT(radio().callNames(), ElementsAre("WlanOpenHandle", "WlanEnumInterfaces",
                                                 "WlanCloseHandle", "WlanFreeMemory"));
}

TEST_F(MachineDevices, AreTheOtherAdaptersTooEachOnce) {
    startRadio(twoInterfaces());
    const auto list =
        devicesAmong({adapter("Wi-Fi as an adapter", FIRST_GUID), adapter("Ethernet", OTHER_GUID),
                      adapter("Modem", "22222222-1111-2222-3333-abcdefabcdef", true)});
    EXPECT_THAT(namesOf(list), ElementsAre("Wi-Fi Kärte", "Wi-Fi 2", "Ethernet", "Modem"));
    EXPECT_THAT(list.devices[2].capability().names(), ElementsAre("NetworkCard"));
    EXPECT_THAT(
        list.devices[2].properties(),
        ElementsAre(Pair("DeviceSystemName", "\\DEVICE\\{00000000-1111-2222-3333-ABCDEFABCDEF}")));
    EXPECT_TRUE(list.devices[3].property("WirelessWAN").exists());
    EXPECT_FALSE(list.devices[3].property("wlanAPISupported").exists());
}

TEST_F(MachineDevices, AreNoneWithoutInterfaces) {
    startRadio(Scenario{.interfaces = {}});
    const auto list = devicesAmong({});
    EXPECT_THAT(list.devices, IsEmpty());
    EXPECT_FALSE(list.failure);
}

TEST_F(MachineDevices, ComeWithTheReasonWhenTheServiceCannotBeAsked) {
    constexpr struct {
        const char* function;
        std::uint32_t error;
        const char* key;
    } rows[] = {
        {"WlanOpenHandle", ERROR_SERVICE_NOT_ACTIVE, "DOCTOR_SERVICE_STOPPED"},
        {"WlanEnumInterfaces", 1702, "DOCTOR_SERVICE_FAILS"},
    };
    for (const auto& [function, error, key] : rows) {
        startRadio(twoInterfaces({{.function = function, .code = error}}));
        const auto list = devicesAmong({adapter("Ethernet", OTHER_GUID)});
        EXPECT_THAT(namesOf(list), ElementsAre("Ethernet"));
        ASSERT_TRUE(list.failure);
        EXPECT_EQ(list.failure->key, key);
        EXPECT_THAT(list.failure->variables,
                    ElementsAre(Pair("Function", function), Pair("Error", mrl::Uint32(error))));
        EXPECT_EQ(radio().callCount("WlanEnumInterfaces"), error == 1702 ? 1U : 0U);
        EXPECT_EQ(radio().openHandles(), 0U);
    }
}

TEST_F(MachineDevices, AreAskedForWithTheServiceTheyNeed) {
    startRadio(twoInterfaces());
    const tesk5::Finding finding = checkWirelessService();
    EXPECT_TRUE(finding.good);
    EXPECT_EQ(message(finding), ofSystem("The wireless service (WLAN AutoConfig) answers.",
                                         "The kernel's wireless interface (nl80211) answers."));
    EXPECT_EQ(radio().openHandles(), 0U);
}

TEST_F(MachineDevices, ComeWithTheRemedyForEachFailureOfTheService) {
    struct Case {
        DWORD error;
        std::string line;
    };
    const Case cases[] = {
        {ERROR_MOD_NOT_FOUND,
         "This Windows has no Wlanapi.dll (WlanOpenHandle: error 126). On a server "
         "edition, add the feature \"Wireless LAN Service\" in Server Manager, or type "
         "\"Install-WindowsFeature Wireless-Networking\" in PowerShell as administrator; then "
         "restart the PC."},
        {ERROR_PROC_NOT_FOUND,
         "This Windows' Wlanapi.dll is too old or damaged (WlanOpenHandle: error 127). "
         "Install all updates of Windows; if that does not help, type \"sfc /scannow\" as "
         "administrator."},
        {ERROR_SERVICE_NOT_ACTIVE,
         ofSystem("The wireless service (WLAN AutoConfig) is not running (WlanOpenHandle: error "
                  "1062). Start \"WLAN AutoConfig\" in services.msc and set its startup type to "
                  "Automatic, or type \"net start WlanSvc\" as administrator.",
                  "The kernel has no wireless interface, nl80211 (WlanOpenHandle: error 1062). It "
                  "comes with the driver of an adapter: plug the adapter in, or type \"sudo "
                  "modprobe cfg80211\". Kernels for virtual machines and clouds often lack it; "
                  "start another one.")},
        {ERROR_ACCESS_DENIED,
         ofSystem("This user may not use the wireless service (WlanOpenHandle: error 5). Sign in "
                  "as another user, or start the program as administrator.",
                  "This process may not talk to the kernel's wireless interface, nl80211 "
                  "(WlanOpenHandle: error 5). A container or sandbox forbids it netlink: start the "
                  "program outside of it, or allow netlink there.")},
        {ERROR_NOT_ENOUGH_MEMORY,
         "There is not enough memory to talk to the wireless service (WlanOpenHandle: "
         "error 8). Close other programs."},
        {ERROR_REMOTE_SESSION_LIMIT_EXCEEDED,
         "Too many programs use the wireless service (WlanOpenHandle: error 1220). Close "
         "other programs, or restart the PC."},
        {1722,
         ofSystem("The wireless service does not answer (WlanOpenHandle: error 1722). "
                  "Restart \"WLAN AutoConfig\" in services.msc, or restart the PC.",
                  "The kernel's wireless interface, nl80211, does not answer (WlanOpenHandle: "
                  "error 1722). Unload the adapter's driver and load it again, or restart the PC; "
                  "\"sudo dmesg\" may say more.")},
    };
    for (const Case& test : cases) {
        startRadio(Scenario{.faults = {{.function = "WlanOpenHandle", .code = test.error}}});
        const tesk5::Finding finding = checkWirelessService();
        EXPECT_FALSE(finding.good);
        EXPECT_EQ(message(finding), test.line);
        EXPECT_THAT(radio().unfiredFaults(), IsEmpty());
    }
}

TEST_F(MachineDevices, OfTheSystemHaveANameEach) {
    startRadio(twoInterfaces());
    for (const NetworkAdapter& each : networkadapters::networkAdapters()) {
        EXPECT_FALSE(each.name.empty());
    }
}

} // namespace

} // namespace test
