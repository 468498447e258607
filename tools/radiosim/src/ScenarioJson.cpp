// The JSON form of a scenario: its keys and the values that they take, as tools/radiosim/README.md
// describes them.
#include "FaultPlan.h"
#include "JsonReader.h"

#include <radiosim/Scenario.h>

#include <nativewifi/Guid.h>

#include <capture/CaptureFile.h>

#include <mrl/Files.h>
#include <mrl/Unicode.h>

#include <limits>
#include <utility>

namespace radiosim {

namespace {

const Words authWords = {{"open", 1},     {"shared", 2}, {"wpa", 3},      {"wpa-psk", 4},
                         {"wpa-none", 5}, {"rsna", 6},   {"rsna-psk", 7}, {"wpa3", 8},
                         {"wpa3-sae", 9}, {"owe", 10}};
const Words cipherWords = {{"none", 0}, {"wep40", 1},  {"tkip", 2},   {"ccmp", 4},
                           {"gcmp", 8}, {"wep104", 5}, {"wep", 0x101}};
const Words bssTypeWords = {{"infrastructure", 1}, {"independent", 2}, {"any", 3}};
const Words radioWords = {{"unknown", 0}, {"on", 1}, {"off", 2}};
const Words phyTypeWords = {{"unknown", 0}, {"ofdm", 4}, {"hrdsss", 5}, {"erp", 6},
                            {"ht", 7},      {"vht", 8},  {"he", 10}};
const Words stateWords = {{"not ready", 0},     {"connected", 1},     {"ad hoc network formed", 2},
                          {"disconnecting", 3}, {"disconnected", 4},  {"associating", 5},
                          {"discovering", 6},   {"authenticating", 7}};
const Words sourceWords = {{"onex", 0x4},      {"acm", 0x8},  {"msm", 0x10},
                           {"security", 0x20}, {"ihv", 0x40}, {"hnwk", 0x80}};
const Words visibleWords = {{"always", static_cast<std::int32_t>(Visible::ALWAYS)},
                            {"afterScan", static_cast<std::int32_t>(Visible::AFTER_SCAN)},
                            {"beforeScan", static_cast<std::int32_t>(Visible::BEFORE_SCAN)}};
const Words scanEndWords = {{"complete", static_cast<std::int32_t>(ScanEnd::COMPLETE)},
                            {"fail", static_cast<std::int32_t>(ScanEnd::FAIL)},
                            {"silent", static_cast<std::int32_t>(ScanEnd::SILENT)}};

constexpr std::size_t SSID_LENGTH = 32;
constexpr std::size_t NAME_LENGTH = 255;
constexpr std::size_t MAC_LENGTH = 6;
constexpr double MOST_CARRIED = 0.95; // noise that lasts longer would need a longer memory
constexpr std::size_t MAX_PHYS = 64;
constexpr std::int64_t MAX_BLOCK = 0x1000000;
constexpr std::size_t LARGEST_FILE = 0x1000000;

std::string readText(const JsonReader& reader) {
    return reader.text();
}
bool readFlag(const JsonReader& reader) {
    return reader.flag();
}
std::uint32_t readUnsigned(const JsonReader& reader) {
    return reader.unsigned32();
}
Milliseconds readMilliseconds(const JsonReader& reader) {
    return reader.milliseconds();
}
std::uint32_t readChannel(const JsonReader& reader) {
    return static_cast<std::uint32_t>(reader.integer(1, 233));
}
std::uint32_t readPercent(const JsonReader& reader) {
    return static_cast<std::uint32_t>(reader.integer(0, 100));
}
Milliseconds readLength(const JsonReader& reader) {
    const Milliseconds length = reader.milliseconds();
    if (length.count() == 0) {
        reader.refuse("more than 0 ms was expected");
    }
    return length;
}

auto wordOrNumber(const Words& words) {
    return [&words](const JsonReader& reader) { return reader.wordOrNumber(words); };
}

template <typename Read>
auto arrayOf(Read read) {
    return [read](const JsonReader& reader) {
        std::vector<decltype(read(reader))> items;
        for (const JsonReader& element : reader.elements()) {
            items.push_back(read(element));
        }
        return items;
    };
}

// A text that goes into a field of 256 UTF-16 units.
std::string readName(const JsonReader& reader) {
    std::string name = reader.text();
    if (mrl::toUtf16(name).size() > NAME_LENGTH) {
        reader.refuse("longer than 255 UTF-16 units");
    }
    return name;
}

std::string checkedSsid(const JsonReader& reader, std::string name) {
    if (name.empty()) {
        reader.refuse("an empty name; a network without a name is written as \"hidden\": true");
    }
    if (name.size() > SSID_LENGTH) {
        reader.refuse("a name of " + std::to_string(name.size()) + " bytes; 32 are possible");
    }
    return name;
}

// "ssid" or "ssidHex", of which exactly one must be there.
std::string readSsid(const JsonReader& reader) {
    if (reader.has("ssid") == reader.has("ssidHex")) {
        reader.refuse("exactly one of \"ssid\" and \"ssidHex\" was expected");
    }
    if (reader.has("ssid")) {
        return checkedSsid(reader.at("ssid"), reader.at("ssid").text());
    }
    const std::vector<std::uint8_t> bytes = reader.at("ssidHex").hexBytes();
    return checkedSsid(reader.at("ssidHex"), std::string(bytes.begin(), bytes.end()));
}

Signal readWalk(const JsonReader& reader) {
    reader.expectKeys({"start", "min", "max", "step", "intervalMs", "seed"});
    Signal::Walk walk;
    reader.optional("min", walk.min, readPercent);
    reader.optional("max", walk.max, readPercent);
    if (walk.min > walk.max) {
        reader.refuse("\"min\" is above \"max\"");
    }
    walk.start = (walk.min + walk.max) / 2;
    reader.optional("start", walk.start, readPercent);
    if (walk.start < walk.min || walk.start > walk.max) {
        reader.at("start").refuse("not between \"min\" and \"max\"");
    }
    reader.optional("step", walk.step, readPercent);
    reader.optional("intervalMs", walk.interval, readLength);
    reader.optional("seed", walk.seed, readUnsigned);
    return walk;
}

Signal readSeries(const JsonReader& reader) {
    reader.expectKeys({"values", "stepMs", "repeat"});
    Signal::Series series;
    series.values = arrayOf(readPercent)(reader.at("values"));
    if (series.values.empty()) {
        reader.at("values").refuse("at least one value was expected");
    }
    reader.optional("stepMs", series.step, readLength);
    reader.optional("repeat", series.repeat, readFlag);
    return series;
}

Signal readSignal(const JsonReader& reader) {
    if (reader.isNumber()) {
        return readPercent(reader);
    }
    if (!reader.isObject()) {
        reader.refuse("a whole number from 0 to 100, or an object with \"values\", \"walk\" or "
                      "\"raw\" was expected");
    }
    if (reader.has("walk")) {
        reader.expectKeys({"walk"});
        return readWalk(reader.at("walk"));
    }
    if (reader.has("raw")) {
        reader.expectKeys({"raw"});
        return reader.at("raw").unsigned32();
    }
    return readSeries(reader);
}

std::int32_t readDecibels(const JsonReader& reader) {
    return static_cast<std::int32_t>(reader.integer(-200, 200));
}

double readDecimalDecibels(const JsonReader& reader) {
    return reader.decimal(-200, 200);
}

Level::Step readStep(const JsonReader& reader) {
    reader.expectKeys({"atMs", "by"});
    return {.at = reader.at("atMs").milliseconds(), .by = readDecimalDecibels(reader.at("by"))};
}

Level readRssi(const JsonReader& reader) {
    if (reader.isNumber()) {
        return readDecibels(reader);
    }
    if (!reader.isObject()) {
        reader.refuse("a whole number from -200 to 200, or an object with \"start\" was expected");
    }
    reader.expectKeys({"start", "driftPerSecond", "noise", "everyMs", "steps"});
    Level::Shape shape;
    shape.start = readDecimalDecibels(reader.at("start"));
    reader.optional("driftPerSecond", shape.driftPerSecond, readDecimalDecibels);
    reader.optional("everyMs", shape.every, readLength);
    reader.optional("steps", shape.steps, arrayOf(readStep));
    if (reader.has("noise")) {
        const JsonReader noise = reader.at("noise");
        noise.expectKeys({"deviation", "carried", "seed"});
        shape.deviation = noise.at("deviation").decimal(0, 50);
        if (noise.has("carried")) {
            shape.carried = noise.at("carried").decimal(0, 1);
            if (shape.carried > MOST_CARRIED) {
                noise.at("carried").refuse("more than 0.95");
            }
        }
        noise.optional("seed", shape.seed, readUnsigned);
    }
    return shape;
}

// null stands for a chain that reports nothing.
std::optional<std::int32_t> readChain(const JsonReader& reader) {
    return reader.isNull() ? std::nullopt : std::optional(readDecibels(reader));
}

std::uint32_t readWidth(const JsonReader& reader) {
    const std::uint32_t width = readUnsigned(reader);
    if (width != 20 && width != 40 && width != 80 && width != 160 && width != 320) {
        reader.refuse("a width of 20, 40, 80, 160 or 320 MHz was expected");
    }
    return width;
}

Bss readBss(const JsonReader& reader) {
    reader.expectKeys({"bssid", "linkQuality", "rssi", "chains", "heardEveryMs", "heardUntilMs",
                       "channel", "phyType", "width", "elements"});
    Bss bss;
    if (reader.has("bssid")) {
        bss.bssid = reader.at("bssid").hexBytes();
        if (bss.bssid.size() != MAC_LENGTH) {
            reader.at("bssid").refuse("six bytes were expected, as in 02:00:00:00:00:01");
        }
    }
    reader.optional("linkQuality", bss.linkQuality, readSignal);
    reader.optional("rssi", bss.rssi, readRssi);
    reader.optional("chains", bss.chains, arrayOf(readChain));
    reader.optional("heardEveryMs", bss.heardEvery, readMilliseconds);
    reader.optional("heardUntilMs", bss.heardUntil, readMilliseconds);
    reader.optional("channel", bss.channel, readChannel);
    reader.optional("phyType", bss.phyType, wordOrNumber(phyTypeWords));
    reader.optional("width", bss.width, readWidth);
    reader.optional("elements", bss.elements, [](const JsonReader& hex) { return hex.hexBytes(); });
    return bss;
}

AccessPoint readAccessPoint(const JsonReader& reader) {
    reader.expectKeys({"ssid",        "ssidHex", "hidden",   "signal",     "profile",
                       "connected",   "secured", "auth",     "cipher",     "bssType",
                       "connectable", "reason",  "phyTypes", "visible",    "scans",
                       "fromMs",      "toMs",    "bss",      "bssidCount", "inNetworkList",
                       "ssidLength"});
    AccessPoint accessPoint;
    reader.optional("hidden", accessPoint.hidden, readFlag);
    if (!accessPoint.hidden || reader.has("ssid") || reader.has("ssidHex")) {
        accessPoint.ssid = readSsid(reader);
    }
    reader.optional("signal", accessPoint.signal, readSignal);
    reader.optional("profile", accessPoint.profile, readName);
    reader.optional("connected", accessPoint.connected, readFlag);
    reader.optional("auth", accessPoint.auth, wordOrNumber(authWords));
    const bool open = accessPoint.auth == authWords.front().value;
    accessPoint.secured = !open;
    accessPoint.cipher = open ? 0 : accessPoint.cipher;
    reader.optional("secured", accessPoint.secured, readFlag);
    reader.optional("cipher", accessPoint.cipher, wordOrNumber(cipherWords));
    reader.optional("bssType", accessPoint.bssType, wordOrNumber(bssTypeWords));
    reader.optional("reason", accessPoint.reason, readUnsigned);
    accessPoint.connectable = !reader.has("reason");
    reader.optional("connectable", accessPoint.connectable, readFlag);
    reader.optional("phyTypes", accessPoint.phyTypes, arrayOf(wordOrNumber(phyTypeWords)));
    if (reader.has("visible")) {
        accessPoint.visible = static_cast<Visible>(reader.at("visible").word(visibleWords));
    }
    reader.optional("scans", accessPoint.scans, readUnsigned);
    reader.optional("fromMs", accessPoint.from, readMilliseconds);
    reader.optional("toMs", accessPoint.to, readMilliseconds);
    reader.optional("bss", accessPoint.bss, arrayOf(readBss));
    reader.optional("bssidCount", accessPoint.bssidCount, readUnsigned);
    reader.optional("inNetworkList", accessPoint.inNetworkList, readFlag);
    reader.optional("ssidLength", accessPoint.ssidLength, readUnsigned);
    return accessPoint;
}

Phy readPhy(const JsonReader& reader) {
    reader.expectKeys({"software", "hardware"});
    Phy phy;
    reader.optional("software", phy.software, wordOrNumber(radioWords));
    reader.optional("hardware", phy.hardware, wordOrNumber(radioWords));
    return phy;
}

Connection::Link readLink(const JsonReader& reader) {
    reader.expectKeys({"channel", "rssi"});
    Connection::Link link;
    link.channel = readChannel(reader.at("channel"));
    link.rssi = static_cast<std::int32_t>(reader.at("rssi").integer(-127, 0));
    return link;
}

Connection readConnection(const JsonReader& reader) {
    reader.expectKeys({"ssid", "ssidHex", "profile", "quality", "rxRate", "txRate", "phyIndex",
                       "channel", "links", "linkFrequencyInKhz", "otherLinks", "heardUntilMs"});
    Connection connection;
    connection.ssid = readSsid(reader);
    reader.optional("profile", connection.profile, readName);
    reader.optional("quality", connection.quality, readSignal);
    reader.optional("rxRate", connection.rxRate, readUnsigned);
    reader.optional("txRate", connection.txRate, readUnsigned);
    reader.optional("phyIndex", connection.phyIndex, readUnsigned);
    reader.optional("channel", connection.channel, readChannel);
    reader.optional("links", connection.links, readFlag);
    reader.optional("linkFrequencyInKhz", connection.linkFrequencyInKhz, readFlag);
    reader.optional("heardUntilMs", connection.heardUntil, readMilliseconds);
    reader.optional("otherLinks", connection.otherLinks, arrayOf(readLink));
    return connection;
}

AuthCipherPair readPair(const JsonReader& reader) {
    reader.expectKeys({"auth", "cipher"});
    AuthCipherPair pair;
    reader.optional("auth", pair.auth, wordOrNumber(authWords));
    reader.optional("cipher", pair.cipher, wordOrNumber(cipherWords));
    return pair;
}

std::string readCountry(const JsonReader& reader) {
    std::string country = reader.text();
    if (country.size() < 2 || country.size() > 3) {
        reader.refuse("two or three letters were expected");
    }
    return country;
}

Interface readInterface(const JsonReader& reader) {
    reader.expectKeys({"guid", "description", "state", "autoconf", "backgroundScan",
                       "mediaStreaming", "bssType", "phys", "connection", "rssi", "receiveAntennas",
                       "scanDurationMs", "scanEnd", "infrastructurePairs", "adhocPairs",
                       "countries", "accessPoints"});
    Interface facts;
    reader.optional("guid", facts.guid, readText);
    reader.optional("description", facts.description, readName);
    reader.optional("state", facts.state, wordOrNumber(stateWords));
    reader.optional("autoconf", facts.autoconf, readFlag);
    reader.optional("backgroundScan", facts.backgroundScan, readFlag);
    reader.optional("mediaStreaming", facts.mediaStreaming, readFlag);
    reader.optional("bssType", facts.bssType, wordOrNumber(bssTypeWords));
    reader.optional("phys", facts.phys, arrayOf(readPhy));
    if (facts.phys.size() > MAX_PHYS) {
        reader.at("phys").refuse("more than 64 PHYs");
    }
    reader.optional("connection", facts.connection, readConnection);
    reader.optional("rssi", facts.rssi, readRssi);
    reader.optional("receiveAntennas", facts.receiveAntennas, readUnsigned);
    reader.optional("scanDurationMs", facts.scanDuration, readMilliseconds);
    if (reader.has("scanEnd")) {
        facts.scanEnd = static_cast<ScanEnd>(reader.at("scanEnd").word(scanEndWords));
    }
    reader.optional("infrastructurePairs", facts.infrastructurePairs, arrayOf(readPair));
    reader.optional("adhocPairs", facts.adhocPairs, arrayOf(readPair));
    reader.optional("countries", facts.countries, arrayOf(readCountry));
    reader.optional("accessPoints", facts.accessPoints, arrayOf(readAccessPoint));
    return facts;
}

Fault readFault(const JsonReader& reader) {
    reader.expectKeys(
        {"function", "nth", "opcode", "delayMs", "code", "dataSize", "count", "noData", "version"});
    Fault fault;
    fault.function = reader.at("function").text();
    if (reader.has("nth")) {
        fault.nth = static_cast<std::uint32_t>(
            reader.at("nth").integer(1, std::numeric_limits<std::uint32_t>::max()));
    }
    reader.optional("opcode", fault.opcode, readUnsigned);
    reader.optional("delayMs", fault.delay, readMilliseconds);
    reader.optional("code", fault.code, readUnsigned);
    if (reader.has("dataSize")) {
        // Blocks are allocated in this size; a typing error must not ask for gigabytes.
        fault.dataSize = static_cast<std::uint32_t>(reader.at("dataSize").integer(0, MAX_BLOCK));
    }
    reader.optional("count", fault.count, readUnsigned);
    reader.optional("noData", fault.noData, readFlag);
    reader.optional("version", fault.version, readUnsigned);
    const std::string mistake = faultMistake(fault);
    if (!mistake.empty()) {
        reader.refuse(mistake);
    }
    return fault;
}

Notification readNotification(const JsonReader& reader) {
    reader.expectKeys({"atMs", "afterScan", "interface", "source", "code", "data"});
    if (reader.has("atMs") == reader.has("afterScan")) {
        reader.refuse("exactly one of \"atMs\" and \"afterScan\" was expected");
    }
    Notification notification;
    reader.optional("atMs", notification.at, readMilliseconds);
    if (reader.has("afterScan")) {
        const JsonReader scan = reader.at("afterScan");
        notification.afterScan =
            scan.isNumber() ? static_cast<std::uint32_t>(
                                  scan.integer(1, std::numeric_limits<std::uint32_t>::max()))
                            : static_cast<std::uint32_t>(scan.word({{"every", 0}}));
    }
    reader.optional("interface", notification.interfaceIndex, readUnsigned);
    if (reader.has("source")) {
        notification.source =
            static_cast<std::uint32_t>(reader.at("source").wordOrNumber(sourceWords));
    }
    reader.optional("code", notification.code, readUnsigned);
    if (reader.has("data")) {
        notification.data = reader.at("data").hexBytes();
    }
    return notification;
}

} // namespace

void Scenario::check() const {
    std::vector<GUID> guids;
    for (const Interface& facts : interfaces) {
        const std::string place = "/interfaces/" + std::to_string(guids.size()) + "/guid";
        const std::optional<GUID> guid = nativewifi::parseGuid(mrl::toUtf16(facts.guid));
        if (!guid) {
            throw ScenarioError(place, "a GUID of 36 characters without braces was expected");
        }
        for (std::size_t i = 0; i < guids.size(); ++i) {
            if (nativewifi::sameGuid(guids[i], *guid)) {
                throw ScenarioError(place, "interface " + std::to_string(i) + " has the same GUID");
            }
        }
        guids.push_back(*guid);
    }
    for (std::size_t i = 0; i < notifications.size(); ++i) {
        const std::uint32_t index = notifications[i].interfaceIndex;
        if (index >= interfaces.size()) {
            throw ScenarioError("/notifications/" + std::to_string(i),
                                "there is no interface " + std::to_string(index));
        }
    }
}

Scenario Scenario::fromJson(std::string_view text) {
    const mrl::Json value = JsonReader::parse(text);
    const JsonReader reader(value, "");
    reader.expectKeys({"description", "interfaces", "faults", "notifications", "serviceVersion"});
    if (reader.has("description")) {
        readText(reader.at("description"));
    }
    Scenario scenario;
    scenario.interfaces = arrayOf(readInterface)(reader.at("interfaces"));
    reader.optional("faults", scenario.faults, arrayOf(readFault));
    reader.optional("notifications", scenario.notifications, arrayOf(readNotification));
    reader.optional("serviceVersion", scenario.serviceVersion, readUnsigned);
    scenario.check();
    return scenario;
}

Scenario Scenario::fromFile(const std::filesystem::path& file) {
    try {
        const std::string text = mrl::readWholeFile(file, capture::LARGEST_FILE);
        if (capture::looksLikeCapture(text)) {
            return fromCapture(text);
        }
        if (text.size() > LARGEST_FILE) {
            throw ScenarioError("", "the file cannot be read");
        }
        return fromJson(text);
    } catch (const mrl::FileFailure&) {
        throw ScenarioError("", "the file cannot be read");
    }
}

Scenario Scenario::builtIn() {
    return fromJson(builtInText());
}

} // namespace radiosim
