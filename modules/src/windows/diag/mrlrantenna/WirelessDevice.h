// One wireless interface of the PC: the one that the framework's device names.
//
// Both tests build one for the length of a run. A failure is a neutral result and, as a rule, a
// line of the logger "mrlrnetwork.WirelessDevice".
//
// The names here, in VisibleNetwork.h and ScanNotification.h, and of Radio and its flags are fixed,
// their spelling included (populateWLANConnectionAtrributes).
#pragma once

#include "Radio.h"
#include "VisibleNetwork.h"

#include <nativewifi/WlanTypes.h>

#include <tesk5/DiagDevice.h>
#include <tesk5/TestResult.h>

#include <mrl/MRLArrayCommon.h>
#include <mrl/String.h>

/// A wireless interface and the module's own client handle to it.
///
/// No operation throws of its own accord. An object belongs to one thread at a time.
///
/// The block of a query is kept in its field until the next query of the same kind replaces the
/// pointer, and deliberately never freed.
class WirelessDevice {
public:
    /// Takes the interface's GUID out of the device's system name, opens and registers the client
    /// handle and reads the radio state.
    /// Failure: none; without a GUID in the name or without a service, later queries fail.
    explicit WirelessDevice(const tesk5::DiagDevice& device);
    WirelessDevice(const WirelessDevice&) = delete;
    WirelessDevice& operator=(const WirelessDevice&) = delete;
    /// Closes the client handle.
    ~WirelessDevice();

    /// The property that carries the device's system name: "VirtualDeviceSystemName" where the
    /// device has it, else "DeviceSystemName".
    static const char* systemNameProperty(const tesk5::DiagDevice& device);

    // --- The client handle -----------------------------------------------------------------------

    /// Opens a client handle, parses the GUID and registers for notifications, unless
    /// m_initialized says that this has succeeded before. Does not set m_initialized itself.
    /// \return whether the interface can be talked to
    /// Platform: WlanOpenHandle, UuidFromStringW, WlanRegisterNotification
    bool initialize();
    /// Closes the handle if there is one and opens a new one for client version 2.
    /// Platform: WlanCloseHandle, WlanOpenHandle
    bool openHandle();
    /// Whether the version that the service agreed to is 2, the one with radio states.
    bool isAPIVersionSupported();
    /// Closes the handle if there is one. Leaves m_initialized as it is.
    /// Platform: WlanCloseHandle
    void closeHandle();

    // --- Queries ---------------------------------------------------------------------------------

    /// Asks for one property of the interface and keeps the answer in its field. An answer whose
    /// size is not exactly the expected one is refused silently; the answer of an opcode without a
    /// field is dropped.
    /// \return whether the answer came and was kept
    /// Platform: WlanQueryInterface
    bool queryWirelessLanInterface(const WLAN_INTF_OPCODE& opcode);
    /// Reads the radio state into m_radioStateData.
    bool populateRadioState();
    /// Reads the current connection into m_connectionAttributes; fails when there is none.
    bool populateWLANConnectionAtrributes();
    /// Whether the interface answers the query for background scanning, whatever the answer.
    bool isScanEnabled();
    /// Lists the system's interfaces in the log and keeps the description of this one. With no
    /// interface that matches, the description stays as it was and the result is still true.
    /// Platform: WlanEnumInterfaces, UuidToStringW, RpcStringFreeW
    bool enumerateInterfaces();
    /// The description of the interface, read afresh; empty when it was never found.
    mrl::String getInterfaceDescription();
    /// The words for an interface state, in double quotes; "invalid interface state" for any other
    /// value. Sets m_connected on connected and disconnected.
    const mrl::Char* getInterfaceStateString(WLAN_INTERFACE_STATE state);
    /// The words for an authentication algorithm.
    static mrl::String getAuthAlgoString(DOT11_AUTH_ALGORITHM algorithm);

    // --- The radio -------------------------------------------------------------------------------

    /// Reads the radio state afresh. \return Radio::flags() of the PHY (an index from 0), or 0 when
    /// the state could not be read
    RadioStateFlags getRadioState(mrl::Int32 phyIndex);
    /// Whether the PHY exists and its radio, read afresh, is on in software and in hardware.
    bool isRadioEnabled(mrl::Int32 phyIndex);
    /// Switches the PHY's radio in software. The platform's result is kept in m_lastSetResult.
    /// Platform: WlanSetInterface
    bool setRadioState(mrl::Uint32 phyIndex, bool enable);

    // --- Visible networks ------------------------------------------------------------------------

    /// Fills m_visibleNetworks afresh, one record a name. A failed query leaves it empty, a handle
    /// that cannot be opened leaves it as it was.
    /// \return whether the interface delivered a list, even an empty one
    /// Failure: logged and, for a radio that is off and for lack of memory, raised as an event; a
    /// denied access requests the framework's advice
    /// Platform: WlanGetAvailableNetworkList, WlanFreeMemory
    bool getVisibleNetworkList();
    /// Fills the list afresh and counts its records.
    mrl::Uint32 getNumVisibleNetworks();
    /// Logs one network and, if it has a name, records it. Null does nothing.
    void printNetworkInfo(const WLAN_AVAILABLE_NETWORK* network);
    /// Appends the record unless a stored one's name is contained in its name.
    void addVisibleNetwork(VisibleNetwork network);
    /// Whether the name of `second` occurs within the name of `first`.
    bool isSame(VisibleNetwork first, VisibleNetwork second);
    /// Logs why a network is not connectable.
    /// Platform: WlanReasonCodeToString
    void printReason(WLAN_REASON_CODE reasonCode);
    /// The words for a BSS type.
    mrl::String getBssTypeString(DOT11_BSS_TYPE bssType);
    /// Writes the name of a network as terminated text, one character a byte, at most 32 (and at
    /// most `capacity` - 1) of them. A byte of 0 ends the text for its readers.
    /// \return `buffer`
    mrl::Char* SsidToStringW(mrl::Char* buffer, std::size_t capacity, const DOT11_SSID* ssid);
    /// Logs the sentence of a failed network list query and raises its event, if it has one.
    /// \return what the failure would mean for a test
    tesk5::TestResult reportNetworkListError(const mrl::String& call, mrl::Uint32 error);

    // --- Signals ---------------------------------------------------------------------------------

    /// Mean signal quality of `network` over three refreshes of the visible-network list.
    ///
    /// Blocks for at least 300 ms: the list settles between refreshes, and one reading jumps by
    /// ten points on common cards.
    /// \return percent, 0 to 100; 0 when no refresh showed the network
    /// Failure: none is reported. A refresh that fails contributes nothing.
    mrl::Int32 getSignalStrength(const VisibleNetwork& network);
    /// Makes the system scan afresh and looks `ssid` up by name, in any letter case, among what
    /// was heard. Blocks for 7 s. Scans on the first interface of the system.
    /// \param[out] signalStrength link quality in percent; untouched when the name was not heard
    /// \return whether the name was heard; failures on the way are silent, but a denied scan
    /// requests the framework's advice Platform: WlanOpenHandle, WlanEnumInterfaces, WlanScan,
    /// WlanGetNetworkBssList
    bool forceScanMatched(const mrl::String& ssid, mrl::Uint32& signalStrength);
    /// Reads quality and rates of the current connection into m_signalQuality, m_rxRate and
    /// m_txRate; sets all three to 0 when there is no connection to read.
    bool getSigTransReceieveRate();

    // Read by the tests of the module, which call the interface with the handle and the GUID too.

    /// When true, getSigTransReceieveRate() fails at once without asking the interface. Nothing in
    /// the module sets it.
    bool m_connectionQueryBlocked = false;
    mrl::Uint32 m_lastSetResult = 0;
    HANDLE m_clientHandle = nullptr;
    bool m_handleOpen = false;
    DWORD m_negotiatedVersion = 0xFFFFFFFF;
    tesk5::DiagDevice m_device;
    mrl::String m_deviceSystemName;
    mrl::String m_interfaceGuidText; ///< without braces
    /// These two and m_mediaStreamingMode: whether an answer came, not what it said.
    BOOL m_autoconfEnabled = 0;
    BOOL m_backgroundScanEnabled = 0;
    WLAN_RADIO_STATE* m_radioStateData = nullptr;
    DOT11_BSS_TYPE* m_bssTypeData = nullptr;
    WLAN_INTERFACE_STATE* m_interfaceStateData = nullptr;
    WLAN_CONNECTION_ATTRIBUTES* m_connectionAttributes = nullptr;
    mrl::Uint32 m_channelNumber = 0; ///< the low half of the block's address
    WLAN_AUTH_CIPHER_PAIR_LIST* m_infrastructureCipherPairs = nullptr;
    WLAN_AUTH_CIPHER_PAIR_LIST* m_adhocCipherPairs = nullptr;
    WLAN_COUNTRY_OR_REGION_STRING_LIST* m_countryOrRegionList = nullptr;
    BOOL m_mediaStreamingMode = 0;
    WLAN_STATISTICS* m_statistics = nullptr;
    mrl::Int32 m_rssi = 0; ///< the low half of the block's address
    Radio m_radio;
    GUID m_interfaceGuid = {};
    bool m_initialized = false;
    bool m_connected = false;        ///< of the last interface asked; read by nothing
    mrl::Uint32 m_signalQuality = 0; ///< percent, of the current connection
    mrl::Uint32 m_rxRate = 0;        ///< kbit/s
    mrl::Uint32 m_txRate = 0;        ///< kbit/s
    mrl::String m_interfaceDescription;
    mrl::Uint32 m_numVisibleNetworks = 0;
    mrl::MRLArray<VisibleNetwork> m_visibleNetworks;
    mrl::String m_errorText; ///< of the last failed query that has one; read by nothing

private:
    bool refreshRadio();
    bool queryNamed(WLAN_INTF_OPCODE opcode, const char* paddedName);
};
