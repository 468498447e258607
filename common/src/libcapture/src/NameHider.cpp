#include "NameHider.h"

#include "Blocks.h"

#include <nativewifi/Guid.h>
#include <nativewifi/Ssid.h>

#include <mrl/Unicode.h>

#include <algorithm>
#include <set>

namespace capture {

namespace {

using mrl::Json;
using NameVisitor = std::function<void(std::string& name)>;

constexpr std::size_t GUID_LENGTH = 36;

std::string textOf(const GUID& guid) {
    return mrl::toUtf8(nativewifi::guidText(guid).view());
}

// Where a GUID begins in `text`; npos when there is none.
std::size_t findGuid(const std::string& text) {
    for (std::size_t at = 0; at + GUID_LENGTH <= text.size(); ++at) {
        if (nativewifi::parseGuid(mrl::toUtf16(std::string_view(text).substr(at, GUID_LENGTH)))) {
            return at;
        }
    }
    return std::string::npos;
}

// A name that was given as its bytes is "hex:" and their digits.
constexpr std::string_view HEX_PREFIX = "hex:";
constexpr const char* HEX_DIGITS = "0123456789ABCDEF";

bool isHexForm(const std::string& text) {
    return mrl::equalNoCase(mrl::toUtf16(text.substr(0, HEX_PREFIX.size())),
                            mrl::toUtf16(HEX_PREFIX));
}

std::string fromHexForm(const std::string& text) {
    std::string bytes;
    int nibbles = 0;
    unsigned value = 0;
    for (const char c : text.substr(HEX_PREFIX.size())) {
        const std::size_t digit =
            std::string_view(HEX_DIGITS).find(c >= 'a' && c <= 'f' ? static_cast<char>(c - 32) : c);
        if (digit == std::string_view::npos) {
            continue;
        }
        value = value << 4 | static_cast<unsigned>(digit);
        if (++nibbles % 2 == 0) {
            bytes += static_cast<char>(value & 0xFF);
        }
    }
    return bytes;
}

std::string toHexForm(const std::string& bytes) {
    std::string text(HEX_PREFIX);
    for (const char c : bytes) {
        text += HEX_DIGITS[static_cast<unsigned char>(c) >> 4];
        text += HEX_DIGITS[static_cast<unsigned char>(c) & 0xF];
    }
    return text;
}

std::string inCaseOf(std::string text, const std::string& original) {
    // Upper case also without a letter: the system's names for adapters have it.
    const bool lower =
        std::any_of(original.begin(), original.end(), [](char c) { return c >= 'a' && c <= 'f'; });
    if (!lower) {
        std::transform(text.begin(), text.end(), text.begin(),
                       [](char c) { return c >= 'a' && c <= 'f' ? static_cast<char>(c - 32) : c; });
    }
    return text;
}

void visit(DOT11_SSID& ssid, const NameVisitor& visitor) {
    const std::string_view bytes = nativewifi::ssidBytes(ssid);
    std::string name(bytes);
    visitor(name);
    std::fill(std::begin(ssid.ucSSID), std::end(ssid.ucSSID), UCHAR{0});
    std::copy_n(name.begin(), std::min<std::size_t>(name.size(), std::size(ssid.ucSSID)),
                std::begin(ssid.ucSSID));
}

template <std::size_t SIZE>
void visit(WCHAR (&text)[SIZE], const NameVisitor& visitor) {
    std::string name = mrl::toUtf8(nativewifi::fixedText(text));
    visitor(name);
    const mrl::CharString written = mrl::toUtf16(name);
    std::fill(std::begin(text), std::end(text), WCHAR{0});
    std::copy_n(written.begin(), std::min(written.size(), SIZE), std::begin(text));
}

void visit(WLAN_INTERFACE_INFO& info, const NameVisitor& visitor) {
    visit(info.strInterfaceDescription, visitor);
}

void visit(WLAN_AVAILABLE_NETWORK& network, const NameVisitor& visitor) {
    visit(network.strProfileName, visitor);
    visit(network.dot11Ssid, visitor);
}

void visit(WLAN_BSS_ENTRY& entry, const NameVisitor& visitor) {
    visit(entry.dot11Ssid, visitor);
}

void visit(WLAN_CONNECTION_ATTRIBUTES& connection, const NameVisitor& visitor) {
    visit(connection.strProfileName, visitor);
    visit(connection.wlanAssociationAttributes.dot11Ssid, visitor);
}

// Changes the structure at `offset` in place.
template <typename T, typename Change>
void changeAt(Bytes& bytes, std::size_t offset, Change change) {
    auto value = structureAt<T>(bytes, offset);
    change(value);
    putStructure(bytes, offset, value);
}

template <typename Item, typename Change>
void changeItems(const ListShape& shape, Bytes& bytes, Change change) {
    for (std::size_t i = 0; i < itemsIn(shape, bytes); ++i) {
        changeAt<Item>(bytes, shape.begin + i * shape.item, change);
    }
}

bool isConnection(const Call& call, const Bytes& bytes) {
    return bytes.size() == sizeof(WLAN_CONNECTION_ATTRIBUTES) &&
           call.request.arguments.value("opcode", 0U) == wlan_intf_opcode_current_connection;
}

// The opcodes whose blocks hold neither names nor addresses.
bool isHarmless(const Call& call) {
    constexpr DWORD opcodes[] = {wlan_intf_opcode_autoconf_enabled,
                                 wlan_intf_opcode_background_scan_enabled,
                                 wlan_intf_opcode_media_streaming_mode,
                                 wlan_intf_opcode_radio_state,
                                 wlan_intf_opcode_bss_type,
                                 wlan_intf_opcode_interface_state,
                                 wlan_intf_opcode_channel_number,
                                 wlan_intf_opcode_supported_infrastructure_auth_cipher_pairs,
                                 wlan_intf_opcode_supported_adhoc_auth_cipher_pairs,
                                 wlan_intf_opcode_supported_country_or_region_string_list,
                                 static_cast<DWORD>(wlan_intf_opcode_statistics),
                                 static_cast<DWORD>(wlan_intf_opcode_rssi)};
    const auto opcode = call.request.arguments.value("opcode", 0U);
    return std::find(std::begin(opcodes), std::end(opcodes), opcode) != std::end(opcodes);
}

} // namespace

void NameHider::replaceNames(const std::function<void(const Visitor&)>& visit) {
    std::vector<std::string> names;
    visit([&names](std::string& name) { names.push_back(name); });
    m_names.learn(names);
    visit([this](std::string& name) { name = m_names.of(name); });
}

GUID NameHider::hiddenGuid(const GUID& guid) {
    if (nativewifi::sameGuid(guid, GUID{})) {
        return guid;
    }
    const auto [entry, added] = m_guids.emplace(textOf(guid), GUID{});
    if (added) {
        Bytes bytes(sizeof(GUID));
        std::generate(bytes.begin(), bytes.end(),
                      [this] { return static_cast<unsigned char>(m_random()); });
        entry->second = structureAt<GUID>(bytes, 0);
    }
    return entry->second;
}

// A text with a GUID in it is a system's name for an adapter: the GUID alone tells which.
std::string NameHider::hiddenText(const std::string& text) {
    const std::size_t at = findGuid(text);
    if (at == std::string::npos) {
        return isHexForm(text) ? toHexForm(m_names.of(fromHexForm(text))) : m_names.of(text);
    }
    const std::string original = text.substr(at, GUID_LENGTH);
    const GUID hidden = hiddenGuid(*nativewifi::parseGuid(mrl::toUtf16(original)));
    return text.substr(0, at) + inCaseOf(textOf(hidden), original) + text.substr(at + GUID_LENGTH);
}

void NameHider::hideAddress(DOT11_MAC_ADDRESS& address) {
    Address original{};
    std::copy(std::begin(address), std::end(address), original.begin());
    const auto [entry, added] = m_addresses.emplace(original, original);
    if (added && original != Address{}) {
        constexpr unsigned char LOCAL = 0x02;
        constexpr unsigned char GROUP = 0x01;
        std::generate(entry->second.begin(), entry->second.end(),
                      [this] { return static_cast<unsigned char>(m_random()); });
        entry->second[0] = static_cast<unsigned char>((entry->second[0] | LOCAL) & ~GROUP);
    }
    std::copy(entry->second.begin(), entry->second.end(), std::begin(address));
}

void NameHider::hideRun(Json& run) {
    for (const char* name : {"tags", "pc", "adapters", "limits", "calibration"}) {
        run.erase(name);
    }
    std::vector<Json*> texts;
    for (Json& setting : run.at("settings")) {
        if (setting.at("text").get<bool>()) {
            texts.push_back(&setting.at("value"));
        }
    }
    if (run.contains("device")) {
        texts.push_back(&run.at("device"));
    }
    if (run.contains("devices")) {
        for (Json& device : run.at("devices")) {
            texts.push_back(&device.at("name"));
            for (auto& [name, value] : device.at("properties").items()) {
                if (value != "true" && value != "false") {
                    texts.push_back(&value);
                }
            }
        }
    }
    std::vector<std::string> names;
    for (const Json* text : texts) {
        const auto name = text->get<std::string>();
        if (findGuid(name) == std::string::npos) {
            names.push_back(isHexForm(name) ? fromHexForm(name) : name);
        }
    }
    m_names.learn(names);
    for (Json* text : texts) {
        *text = hiddenText(text->get<std::string>());
    }
}

void NameHider::hideGuids(Call& call) {
    Json& arguments = call.request.arguments;
    const auto isText = [&arguments](const char* key) {
        return arguments.contains(key) && arguments.at(key).is_string();
    };
    for (const char* key : {"interface", "guid"}) {
        if (isText(key)) {
            const auto guid = arguments.at(key).get<std::string>();
            arguments.at(key) = textOf(hiddenGuid(*nativewifi::parseGuid(mrl::toUtf16(guid))));
        }
    }
    for (const char* key : {"text", "ssid"}) {
        if (isText(key)) {
            const auto text = arguments.at(key).get<std::string>();
            if (findGuid(text) == std::string::npos) {
                m_names.learn({text});
            }
            arguments.at(key) = hiddenText(text);
        }
    }
    if (call.answer.guid) {
        call.answer.guid = hiddenGuid(*call.answer.guid);
    }
    if (call.answer.text) {
        call.answer.text = hiddenText(*call.answer.text); // a reason is none and stays
    }
}

void NameHider::visitNames(const Call& call, Bytes& bytes, const Visitor& visitor) {
    const auto visitOne = [&visitor](auto& structure) { visit(structure, visitor); };
    if (const ListShape* shape = listShapeOf(call.request.function)) {
        switch (shape->item) {
        case sizeof(WLAN_INTERFACE_INFO):
            changeItems<WLAN_INTERFACE_INFO>(*shape, bytes, visitOne);
            break;
        case sizeof(WLAN_AVAILABLE_NETWORK):
            changeItems<WLAN_AVAILABLE_NETWORK>(*shape, bytes, visitOne);
            break;
        default:
            changeItems<WLAN_BSS_ENTRY>(*shape, bytes, visitOne);
        }
    } else if (isConnection(call, bytes)) {
        changeAt<WLAN_CONNECTION_ATTRIBUTES>(bytes, 0, visitOne);
    }
}

void NameHider::hideBlock(const Call& call, Bytes& bytes) {
    const ListShape* shape = listShapeOf(call.request.function);
    if (shape != nullptr) {
        // Behind the items are information elements, or nothing.
        const std::size_t end = shape->begin + itemsIn(*shape, bytes) * shape->item;
        std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(std::min(end, bytes.size())),
                  bytes.end(), static_cast<unsigned char>(0));
    } else if (!isConnection(call, bytes) && !isHarmless(call)) {
        std::fill(bytes.begin(), bytes.end(), static_cast<unsigned char>(0));
    }
    replaceNames([&](const Visitor& visitor) { visitNames(call, bytes, visitor); });
    if (shape != nullptr && shape->item == sizeof(WLAN_INTERFACE_INFO)) {
        changeItems<WLAN_INTERFACE_INFO>(*shape, bytes, [this](WLAN_INTERFACE_INFO& info) {
            info.InterfaceGuid = hiddenGuid(info.InterfaceGuid);
        });
    } else if (shape != nullptr && shape->item == sizeof(WLAN_BSS_ENTRY)) {
        changeItems<WLAN_BSS_ENTRY>(*shape, bytes, [this](WLAN_BSS_ENTRY& entry) {
            hideAddress(entry.dot11Bssid);
            entry.ullTimestamp = 0;
            entry.ullHostTimestamp = 0;
        });
    } else if (isConnection(call, bytes)) {
        changeAt<WLAN_CONNECTION_ATTRIBUTES>(bytes, 0, [this](WLAN_CONNECTION_ATTRIBUTES& value) {
            hideAddress(value.wlanAssociationAttributes.dot11Bssid);
        });
    }
}

void NameHider::hide(Step& step) {
    if (auto* call = std::get_if<Call>(&step.what)) {
        hideGuids(*call);
        if (call->answer.block && call->answer.block->bytes) {
            hideBlock(*call, *call->answer.block->bytes);
        }
    } else if (auto* notification = std::get_if<Notification>(&step.what)) {
        notification->interfaceGuid = hiddenGuid(notification->interfaceGuid);
        std::fill(notification->data.begin(), notification->data.end(),
                  static_cast<unsigned char>(0));
    } else if (auto* adapters = std::get_if<Adapters>(&step.what)) {
        replaceNames([adapters](const Visitor& visitor) {
            for (Adapter& adapter : *adapters) {
                visitor(adapter.name);
            }
        });
        for (Adapter& adapter : *adapters) {
            adapter.guid = hiddenGuid(adapter.guid);
        }
    }
}

} // namespace capture
