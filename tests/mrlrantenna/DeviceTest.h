// What the tests of WirelessDevice share: one device on the simulated radio, and ways to write down
// what it called, logged and traced.
#pragma once

#include "ModuleTest.h"

#include <WirelessDevice.h>

#include <nativewifi/Api.h>

#include <tesk5/Texts.h>

#include <algorithm>
#include <cctype>

namespace test {

/// A log line of `text` behind the number of the source line that wrote it.
MATCHER_P(LineSaying, text, "") {
    const std::string& line = arg;
    const std::size_t blank = line.find(' ');
    return blank != std::string::npos && blank != 0 &&
           std::all_of(line.begin(), line.begin() + static_cast<std::ptrdiff_t>(blank),
                       [](char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }) &&
           line.substr(blank + 1) == text;
}

inline constexpr const char* RADIO_QUERY_LINE =
    "The queryWirelessLanInterface call with OPCODE wlan_intf_opcode_radio_state  failed";
inline constexpr const char* CONNECTION_QUERY_LINE =
    "The queryWirelessLanInterface call with OPCODE wlan_intf_opcode_current_connection    failed";

class DeviceTest : public ModuleTest {
protected:
    /// The device of the scenario's first interface, or another.
    WirelessDevice& open() { return open(device()); }
    WirelessDevice& open(const tesk5::DiagDevice& device) { return m_device.emplace(device); }
    /// The same; calls and lines of the construction are forgotten.
    WirelessDevice& opened() {
        WirelessDevice& subject = open();
        radio().clearCalls();
        log().clear();
        return subject;
    }
    /// The same on a radio of one adapter: this one, or the default one that sees `accessPoints`.
    WirelessDevice& openedOn(radiosim::Interface adapter) {
        close();
        startRadio(radiosim::Scenario{.interfaces = {std::move(adapter)}});
        return opened();
    }
    WirelessDevice& openedSeeing(std::vector<radiosim::AccessPoint> accessPoints) {
        return openedOn({.accessPoints = std::move(accessPoints)});
    }
    /// Ends the device.
    void close() { m_device.reset(); }

    static VisibleNetwork named(const char* name) {
        VisibleNetwork network;
        network.m_ssid = name;
        return network;
    }
    static std::string utf8(const mrl::String& text) { return text.getUTF8String().bytes(); }

    std::vector<std::string> lines() const { return logged(DEVICE_LOGGER); }
    /// What `operation` does at trace level, in order: "> scope", "< scope", log lines as they are,
    /// and calls by their functions.
    template <typename Operation>
    static std::vector<std::string> traceOf(Operation operation) {
        const Journal journal;
        mrl::LogFactory::setPriority(0);
        operation();
        mrl::LogFactory::setPriority(1);
        std::vector<std::string> trace;
        for (const std::string& entry : journal.entries({"log", "call"})) {
            if (entry.starts_with("call ")) {
                trace.push_back(entry.substr(5, entry.find(' ', 5) - 5));
            } else {
                const std::string text = entry.substr(entry.find(": ") + 2);
                trace.push_back(text.starts_with("> ") ? text.substr(0, text.find(' ', 2)) : text);
            }
        }
        return trace;
    }
    /// The names of the trace scopes that `operation` opens, in order.
    template <typename Operation>
    static std::vector<std::string> scopesOf(Operation operation) {
        std::vector<std::string> names;
        for (const std::string& entry : traceOf(operation)) {
            if (entry.starts_with("> ")) {
                names.push_back(entry.substr(2));
            }
        }
        return names;
    }

    /// The text of a key, as the user reads it.
    static std::string localized(const char* key) { return tesk5::translation(key).utf8(); }

private:
    std::optional<WirelessDevice> m_device;
};

/// The calls of a device of the scenario's first interface, as the radio writes them down.
namespace calls {

inline std::string open(const std::string& handle, unsigned int negotiated = 2) {
    return R"(WlanOpenHandle {"clientVersion":2,"reserved":null} = 0 {"negotiatedVersion":)" +
           std::to_string(negotiated) + R"(,"handle":")" + handle + "\"}";
}
inline std::string close(const std::string& handle) {
    return R"(WlanCloseHandle {"handle":")" + handle + R"(","reserved":null} = 0 {})";
}
inline std::string parse(const std::string& guid = radiosim::FIRST_INTERFACE, DWORD result = 0) {
    return R"(UuidFromStringW {"text":")" + guid + "\"} = " + std::to_string(result) + " {}";
}
inline std::string listen(const std::string& handle, DWORD result = 0) {
    return R"(WlanRegisterNotification {"handle":")" + handle +
           R"(","source":65535,"ignoreDuplicate":true,"callback":"set","context":null,)"
           R"("reserved":null,"previousSource":null} = )" +
           std::to_string(result) + " {}";
}
inline std::string query(const std::string& handle, unsigned int opcode, unsigned int size) {
    return R"(WlanQueryInterface {"handle":")" + handle + R"(","interface":")" +
           radiosim::FIRST_INTERFACE + R"(","opcode":)" + std::to_string(opcode) +
           R"(,"reserved":null,"valueType":null} = 0 {"dataSize":)" + std::to_string(size) + "}";
}

} // namespace calls

/// While it lives, functions of the table can be replaced; the replacements reach the simulator
/// through service().
class PatchedApi {
public:
    PatchedApi() : m_table(nativewifi::api()), m_scope(m_table) { service() = m_table; }

    nativewifi::Api* operator->() { return &m_table; }
    static nativewifi::Api& service() {
        static nativewifi::Api functions;
        return functions;
    }

private:
    nativewifi::Api m_table;
    nativewifi::ScopedApi m_scope;
};

} // namespace test
