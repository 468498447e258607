#include "devices/DeviceFile.h"

#include <tesk5/BadInput.h>
#include <tesk5/Texts.h>

#include "texts/JsonFile.h"

#include <mrl/System.h>

namespace tesk5 {

namespace {

// A value of the file together with the path that leads to it.
struct Place {
    const mrl::Json& value;
    std::string path;

    Place member(const std::string& name) const { return {value.at(name), path + "." + name}; }
    Place item(std::size_t index) const {
        return {value.at(index), path + "[" + std::to_string(index) + "]"};
    }
    /// \param key of a text with {Place} in it
    [[noreturn]] void refuse(const char* key, Event::Variables variables = {}) const {
        variables.emplace_back("Place", path);
        throw UnusableInput(Message(key, std::move(variables)));
    }
};

TeskString stringOf(const Place& place) {
    if (!place.value.is_string()) {
        place.refuse("INPUT_DEVICES_TEXT", {{"Type", place.value.type_name()}});
    }
    return TeskString(place.value.get<std::string>());
}

DeviceCapability capabilitiesOf(const Place& place) {
    if (!place.value.is_array()) {
        place.refuse("INPUT_DEVICES_CAPABILITIES");
    }
    DeviceCapability all;
    for (std::size_t i = 0; i < place.value.size(); ++i) {
        const TeskString name = stringOf(place.item(i));
        const std::optional<DeviceCapability> capability = DeviceCapability::fromName(name.utf8());
        if (!capability) {
            place.item(i).refuse("INPUT_DEVICES_NO_CAPABILITY", {{"Name", name}});
        }
        all = all | *capability;
    }
    return all;
}

DiagDevice::Properties propertiesOf(const Place& place) {
    if (!place.value.is_object()) {
        place.refuse("INPUT_DEVICES_PROPERTIES");
    }
    DiagDevice::Properties properties;
    for (const auto& [name, value] : place.value.items()) {
        properties.emplace_back(TeskString(name), stringOf(place.member(name)));
    }
    return properties;
}

DiagDevice deviceOf(const Place& place) {
    if (!place.value.is_object()) {
        place.refuse("INPUT_DEVICES_OBJECT");
    }
    for (const auto& [name, value] : place.value.items()) {
        if (name != "name" && name != "capabilities" && name != "properties") {
            place.refuse("INPUT_DEVICES_UNKNOWN_MEMBER", {{"Name", name}});
        }
    }
    for (const char* name : {"name", "capabilities"}) {
        if (!place.value.contains(name)) {
            place.refuse("INPUT_DEVICES_MISSING_MEMBER", {{"Name", name}});
        }
    }
    return {stringOf(place.member("name")), capabilitiesOf(place.member("capabilities")),
            place.value.contains("properties") ? propertiesOf(place.member("properties"))
                                               : DiagDevice::Properties()};
}

} // namespace

DeviceList devicesFromFile(const std::string& path) {
    try {
        const mrl::Json root = readJsonFile(mrl::System::path(path));
        const Place whole{root, "$"};
        if (!root.is_array()) {
            whole.refuse("INPUT_DEVICES_LIST");
        }
        DeviceList all;
        for (std::size_t i = 0; i < root.size(); ++i) {
            all.devices.push_back(deviceOf(whole.item(i)));
        }
        return all;
    } catch (const UnusableInput& failure) {
        throw BadInput{
            message("INPUT_DEVICES_UNUSABLE", {{"File", path}, {"Reason", failure.reason()}})};
    }
}

} // namespace tesk5
