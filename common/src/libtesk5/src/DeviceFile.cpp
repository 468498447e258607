#include "DeviceList.h"

#include "BadInput.h"
#include "JsonFile.h"

#include <mrl/System.h>

namespace tesk5 {

namespace {

// A value of the file together with the path that leads to it.
struct Place {
    const Json& value;
    std::string path;

    Place member(const std::string& name) const { return {value.at(name), path + "." + name}; }
    Place item(std::size_t index) const {
        return {value.at(index), path + "[" + std::to_string(index) + "]"};
    }
    [[noreturn]] void refuse(const std::string& reason) const {
        throw JsonFailure("at " + path + " " + reason);
    }
};

TeskString textOf(const Place& place) {
    if (!place.value.is_string()) {
        place.refuse(std::string("there is a text to be, not ") + place.value.type_name());
    }
    return TeskString(place.value.get<std::string>());
}

DeviceCapability capabilitiesOf(const Place& place) {
    if (!place.value.is_array()) {
        place.refuse("there is a list of names to be, such as [\"Wireless\", \"NetworkCard\"]");
    }
    DeviceCapability all;
    for (std::size_t i = 0; i < place.value.size(); ++i) {
        const TeskString name = textOf(place.item(i));
        const std::optional<DeviceCapability> capability = DeviceCapability::fromName(name.utf8());
        if (!capability) {
            place.item(i).refuse(inQuotes(name.utf8()) +
                                 " is no capability; use \"Wireless\" or \"NetworkCard\"");
        }
        all = all | *capability;
    }
    return all;
}

DiagDevice::Properties propertiesOf(const Place& place) {
    if (!place.value.is_object()) {
        place.refuse("there is an object of names and texts to be");
    }
    DiagDevice::Properties properties;
    for (const auto& [name, value] : place.value.items()) {
        properties.emplace_back(TeskString(name), textOf(place.member(name)));
    }
    return properties;
}

DiagDevice deviceOf(const Place& place) {
    if (!place.value.is_object()) {
        place.refuse("there is an object with \"name\", \"capabilities\" and \"properties\" to be");
    }
    for (const auto& [name, value] : place.value.items()) {
        if (name != "name" && name != "capabilities" && name != "properties") {
            place.refuse("the member " + inQuotes(name) +
                         " is unknown; known are \"name\", \"capabilities\" and \"properties\"");
        }
    }
    for (const char* name : {"name", "capabilities"}) {
        if (!place.value.contains(name)) {
            place.refuse("the member " + inQuotes(name) + " is missing");
        }
    }
    return {textOf(place.member("name")), capabilitiesOf(place.member("capabilities")),
            place.value.contains("properties") ? propertiesOf(place.member("properties"))
                                               : DiagDevice::Properties()};
}

} // namespace

DeviceList devicesFromFile(const std::string& path) {
    try {
        const Json root = readJsonFile(mrl::System::path(path));
        const Place whole{root, "$"};
        if (!root.is_array()) {
            whole.refuse("there is a list of devices to be");
        }
        DeviceList all;
        for (std::size_t i = 0; i < root.size(); ++i) {
            all.devices.push_back(deviceOf(whole.item(i)));
        }
        return all;
    } catch (const JsonFailure& failure) {
        throw BadInput{"the device file " + inQuotes(path) + " cannot be used: " + failure.what() +
                       "; mend it, or leave out --devices to use this PC's devices"};
    }
}

} // namespace tesk5
