#include <levels/StationFile.h>

#include <calibration/Validity.h>
#include <readings/DriverNumbers.h>

#include <tesk5/BadInput.h>
#include <tesk5/Number.h>
#include <tesk5/Texts.h>
#include <tesk5/TomlFile.h>

#include <mrl/Clock.h>
#include <mrl/Sha256.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace levels {

namespace {

using mrl::Json;
using nativewifi::Band;
using tesk5::message;
using tesk5::Number;
using tesk5::tomlText;

constexpr const char* TABLE = "calibration";
constexpr const char* RADIOS = "radio";
constexpr int VERSION = 1;
constexpr int OFFSET_DECIMALS = 2;
// Levels and offsets are written with two decimals.
constexpr double ROUNDING = 0.011;
constexpr std::pair<Band, const char*> BANDS[] = {
    {Band::GHZ_2_4, "2.4"}, {Band::GHZ_5, "5"}, {Band::GHZ_6, "6"}};

// Reads the members of one table, and refuses what is not as stationText() writes it.
class Reader {
public:
    Reader(const Json& table, const std::string& file) : m_table(table), m_file(file) {}

    std::string text(const char* key) const {
        const Json& value = member(key);
        if (!value.is_string() || value.get_ref<const std::string&>().empty()) {
            refuse(key);
        }
        return value.get<std::string>();
    }
    double number(const char* key, double lowest, double highest) const {
        return numberIn(member(key), key, lowest, highest);
    }
    int whole(const char* key, int lowest, int highest) const {
        const double value = number(key, lowest, highest);
        if (value != std::floor(value)) {
            refuse(key);
        }
        return static_cast<int>(value);
    }
    std::vector<double> numbers(const char* key, double lowest, double highest) const {
        const Json& list = member(key);
        if (!list.is_array()) {
            refuse(key);
        }
        std::vector<double> all;
        for (const Json& value : list) {
            all.push_back(numberIn(value, key, lowest, highest));
        }
        return all;
    }
    const Json& member(const char* key) const {
        if (!m_table.is_object() || !m_table.contains(key)) {
            refuse(key);
        }
        return m_table[key];
    }
    [[noreturn]] void refuse(const char* key) const {
        throw tesk5::BadInput{message("STATION_FILE_UNUSABLE", {{"File", m_file}, {"Key", key}})};
    }

private:
    double numberIn(const Json& value, const char* key, double lowest, double highest) const {
        if (!value.is_number() || !(value.get<double>() >= lowest) ||
            !(value.get<double>() <= highest)) {
            refuse(key);
        }
        return value.get<double>();
    }

    const Json& m_table;
    const std::string& m_file;
};

Band bandIn(const Reader& reader) {
    const std::string name = reader.text("band");
    for (const auto& [band, text] : BANDS) {
        if (name == text) {
            return band;
        }
    }
    reader.refuse("band");
}

RadioCalibration radioIn(const Json& table, const std::string& file) {
    constexpr double LARGEST_OFFSET = 120;
    constexpr double LARGEST_UNCERTAINTY = 20;
    constexpr int MOST_SAMPLES = 1000;
    const Reader reader(table, file);
    RadioCalibration radio;
    const std::optional<readings::Bssid> bssid = readings::parseBssid(reader.text("bssid"));
    const std::optional<std::chrono::sys_days> date = calibration::parseDay(reader.text("date"));
    if (!bssid) {
        reader.refuse("bssid");
    }
    if (!date) {
        reader.refuse("date");
    }
    radio.bssid = *bssid;
    radio.band = bandIn(reader);
    radio.reference.level =
        reader.number("reference", readings::BELOW_EACH_LEVEL, readings::ABOVE_EACH_LEVEL);
    radio.reference.uncertainty = reader.number("reference-uncertainty", 0, LARGEST_UNCERTAINTY);
    radio.placements =
        reader.numbers("placements", readings::BELOW_EACH_LEVEL, readings::ABOVE_EACH_LEVEL);
    if (radio.placements.size() < calibration::FEWEST_PLACEMENTS ||
        radio.placements.size() > MOST_PLACEMENTS) {
        reader.refuse("placements");
    }
    radio.step = reader.number("step", 0, LARGEST_UNCERTAINTY);
    radio.samples = static_cast<std::size_t>(reader.whole("samples", 1, MOST_SAMPLES));
    radio.unit = reader.text("unit");
    radio.date = *date;
    radio.days = reader.whole("days", 1, MOST_CALIBRATION_DAYS);
    radio.software = reader.text("software");
    const calibration::Offset offset = radio.offset();
    const double infinite = std::numeric_limits<double>::infinity();
    for (const auto& [key, expected] :
         {std::pair("offset", offset.value), std::pair("uncertainty", offset.expanded)}) {
        if (!(std::abs(reader.number(key, -LARGEST_OFFSET, infinite) - expected) < ROUNDING)) {
            reader.refuse(key);
        }
    }
    if (reader.text("expires") != dayText(radio.expiry())) {
        reader.refuse("expires");
    }
    return radio;
}

std::string decimal(double value) {
    return Number::rounded(value, OFFSET_DECIMALS).text();
}

std::string textOf(const RadioCalibration& radio) {
    const calibration::Offset offset = radio.offset();
    std::string placements;
    for (const double level : radio.placements) {
        placements += (placements.empty() ? "" : ", ") + decimal(level);
    }
    const std::pair<const char*, std::string> settings[] = {
        {"bssid", tomlText(readings::bssidText(radio.bssid))},
        {"band", tomlText(bandName(radio.band))},
        {"offset", decimal(offset.value)},
        {"uncertainty", decimal(offset.expanded)},
        {"reference", decimal(radio.reference.level)},
        {"reference-uncertainty", decimal(radio.reference.uncertainty)},
        {"placements", "[" + placements + "]"},
        {"step", decimal(radio.step)},
        {"samples", std::to_string(radio.samples)},
        {"unit", tomlText(radio.unit)},
        {"date", tomlText(dayText(radio.date))},
        {"days", std::to_string(radio.days)},
        {"expires", tomlText(dayText(radio.expiry()))},
        {"software", tomlText(radio.software)},
    };
    std::string text = std::string("\n[[") + TABLE + "." + RADIOS + "]]\n";
    for (const auto& [key, value] : settings) {
        text += std::string(key) + " = " + value + "\n";
    }
    return text;
}

} // namespace

calibration::Offset RadioCalibration::offset() const {
    return calibration::offset(placements, reference, step, CALIBRATION_CONFIDENCE);
}

const RadioCalibration* Station::find(const readings::Bssid& bssid,
                                      std::optional<Band> band) const {
    const auto found = std::ranges::find_if(radios, [&](const RadioCalibration& radio) {
        return radio.bssid == bssid && radio.band == band;
    });
    return found == radios.end() ? nullptr : &*found;
}

void Station::put(RadioCalibration radio) {
    std::erase_if(radios, [&radio](const RadioCalibration& other) {
        return other.bssid == radio.bssid && other.band == radio.band;
    });
    radios.push_back(std::move(radio));
}

StationFile readStation(const std::string& path) {
    const tesk5::TomlFile file = tesk5::readTomlFile(path);
    const Reader reader(Reader(file.root, path).member(TABLE), path);
    if (reader.number("version", 0, std::numeric_limits<int>::max()) != VERSION) {
        throw tesk5::BadInput{message("STATION_FILE_VERSION", {{"File", path}})};
    }
    StationFile found;
    found.station.name = reader.text("station");
    const Json& radios = reader.member(RADIOS);
    if (!radios.is_array() || radios.empty()) {
        reader.refuse(RADIOS);
    }
    for (const Json& table : radios) {
        RadioCalibration radio = radioIn(table, path);
        if (found.station.find(radio.bssid, radio.band) != nullptr) {
            reader.refuse("bssid");
        }
        found.station.put(std::move(radio));
    }
    found.sha256 = mrl::sha256Of(file.bytes);
    found.hasOtherSettings = file.root.size() > 1;
    return found;
}

std::string stationText(const Station& station) {
    std::string text = "# " + message("STATION_FILE_HEAD") + "\n\n[" + TABLE +
                       "]\nversion = " + std::to_string(VERSION) +
                       "\nstation = " + tomlText(station.name) + "\n";
    for (const RadioCalibration& radio : station.radios) {
        text += textOf(radio);
    }
    return text;
}

const char* bandName(Band band) {
    for (const auto& [known, text] : BANDS) {
        if (known == band) {
            return text;
        }
    }
    return "";
}

std::string dayText(std::chrono::sys_days day) {
    const std::chrono::year_month_day date(day);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return text.data();
}

std::chrono::sys_days today() {
    mrl::Clock& clock = mrl::Clock::current();
    const mrl::Clock::UtcTime now = clock.utcNow();
    return std::chrono::floor<std::chrono::days>(now + clock.utcOffset(now));
}

} // namespace levels
