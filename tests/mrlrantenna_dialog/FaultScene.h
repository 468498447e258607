// The scene in which calls of the dialog fail or the card comes and goes, and what is shown then.
#pragma once

#include "DialogTest.h"

namespace test {

inline constexpr std::int32_t ON = 1;
inline constexpr std::int32_t OFF = 2;
inline constexpr std::uint32_t NOT_VISIBLE = 0x28002;

/// Two networks: Attic is not connectable; Cellar, which the adapter is connected to, claims 100%.
inline radiosim::Scenario atticAndCellar(std::int32_t software = ON) {
    radiosim::Scenario scenario;
    radiosim::Interface& adapter = scenario.interfaces.front();
    adapter.accessPoints = {
        {.ssid = "Attic", .signal = 30U, .connectable = false, .reason = NOT_VISIBLE},
        {.ssid = "Cellar", .signal = 100U}};
    adapter.phys = {{.software = software}};
    adapter.connection = radiosim::Connection{.ssid = "Cellar", .quality = 33U};
    return scenario;
}

/// What the dialog shows; as a default, in that scene when nothing goes wrong.
struct Display {
    const char* adapter = "Simulated Wireless Adapter";
    const char* list = "Attic, Cellar";
    const char* chosen = "Cellar";
    const char* details = "Cellar: Low 33% 33";
    const char* radio = "RADIO_BUTTON_ON"; ///< the key of the text
    const char* picture = "on";
};

inline std::string text(const Display& display) {
    return std::string("adapter ") + display.adapter + "; list " + display.list + "; chosen " +
           display.chosen + "; details " + display.details + "; radio " +
           tesk5::translation(display.radio).utf8() + "; picture " + display.picture;
}

/// The same of what a dialog shows now.
inline std::string textOn(const Dialog& dialog) {
    std::string list;
    for (const std::string& entry : entries(dialog)) {
        list += (list.empty() ? "" : ", ") + entry;
    }
    return "adapter " + shown(dialog, IDC_ADAPTER_NAME) + "; list " + list + "; chosen " +
           selected(dialog) + "; details " + shown(dialog, IDC_SSID) + ": " + strength(dialog) +
           "; radio " + shown(dialog, IDC_RADIO_STATUS) + "; picture " + picture(dialog);
}

} // namespace test
