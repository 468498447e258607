#include <networks/Table.h>

#include <networks/NetworkTexts.h>
#include <networks/SecurityWords.h>

#include <tesk5/Texts.h>

#include <nativewifi/Channels.h>

#include <mrl/DisplayWidth.h>

#include <algorithm>

namespace networks {

namespace {

// For what the system does not say.
constexpr const char* NOTHING_KNOWN = "-";
constexpr std::size_t GAP = 2;
constexpr std::size_t SHORTEST_NAME = 16;
constexpr std::size_t SHORTEST_SECURITY = 15; // "WPA2 Enterprise"

std::string numberText(std::size_t number) {
    return number == 0 ? NOTHING_KNOWN : std::to_string(number);
}

std::string levelText(const Network& network) {
    return network.dbm ? std::to_string(*network.dbm) : NOTHING_KNOWN;
}
std::string percentText(const Network& network) {
    return std::to_string(network.percent);
}
std::string ageText(const Network& network) {
    return network.age
               ? std::to_string(std::chrono::round<std::chrono::seconds>(*network.age).count())
               : NOTHING_KNOWN;
}
std::string bandOrUnknown(const Network& network) {
    const std::string text = bandText(network);
    return text.empty() ? NOTHING_KNOWN : text;
}
std::string channelText(const Network& network) {
    return numberText(nativewifi::channelOf(network.mhz));
}
std::string widthText(const Network& network) {
    return numberText(network.width);
}
std::string securityText(const Network& network) {
    return network.security == OPEN ? tesk5::message("NETWORK_OPEN") : network.security;
}
std::string addressText(const Network& network) {
    return readings::bssidText(network.bssid);
}
std::string deviceText(const Network& network) {
    return network.device == 0 ? std::string()
                               : std::to_string(network.device) + (network.deviceIsSure ? "" : "?");
}

struct Column {
    const char* head; // key of a text
    std::string (*text)(const Network& network);
    bool right;               // numbers
    int dropped;              // in which order it goes where there is no room; 0: it stays
    std::size_t shortest = 0; // columns to which its texts may be cut; 0: they stay whole
};
// The names are last: those in scripts of any width and direction move nothing behind them.
constexpr Column columnsInOrder[] = {
    {"NETWORKS_LEVEL", &levelText, true, 0},
    {"NETWORKS_PERCENT", &percentText, true, 2},
    {"NETWORKS_AGE", &ageText, true, 1},
    {"NETWORKS_BAND", &bandOrUnknown, true, 5},
    {"NETWORKS_CHANNEL", &channelText, true, 0},
    {"NETWORKS_WIDTH", &widthText, true, 4},
    {"NETWORKS_SECURITY", &securityText, false, 6, SHORTEST_SECURITY},
    {"NETWORKS_BSSID", &addressText, false, 7},
    {"NETWORKS_DEVICE", &deviceText, false, 3},
    {"NETWORKS_NAME", &shownName, false, 0, SHORTEST_NAME},
};
constexpr int LAST_DROPPED = 7;

// The texts of a column, the head's first.
std::vector<std::string> textsOf(const Column& column, const std::vector<Network>& networks) {
    std::vector<std::string> texts;
    texts.reserve(networks.size() + 1);
    texts.push_back(tesk5::message(column.head));
    for (const Network& network : networks) {
        texts.push_back(column.text(network));
    }
    return texts;
}

std::size_t widestOf(const std::vector<std::string>& texts) {
    std::size_t widest = 0;
    for (const std::string& text : texts) {
        widest = std::max(widest, mrl::columnsOf(text));
    }
    return widest;
}

// A column with its texts.
struct Filled {
    Column column;
    std::vector<std::string> texts;
    std::size_t widest;
    std::size_t width; ///< that is shown

    Filled(const Column& from, const std::vector<Network>& networks)
        : column(from), texts(textsOf(from, networks)), widest(widestOf(texts)), width(widest) {}

    std::string cell(std::size_t row) const {
        const std::string text = mrl::fittedToColumns(texts[row], width);
        const std::string rest(width - mrl::columnsOf(text), ' ');
        return column.right ? rest + text : text + rest;
    }
};

std::size_t widthOf(const std::vector<Filled>& table) {
    std::size_t width = 0;
    for (const Filled& filled : table) {
        width += filled.width + GAP;
    }
    return width - std::min(width, GAP);
}

// Cuts texts and drops columns until the table is `columns` wide; what is left then is for the
// texts that were cut, names first.
void fit(std::vector<Filled>& table, std::size_t columns) {
    if (widthOf(table) <= columns) {
        return;
    }
    for (Filled& filled : table) {
        const std::size_t shortest = filled.column.shortest;
        filled.width = shortest == 0 ? filled.width : std::min(filled.width, shortest);
    }
    for (int next = 1; next <= LAST_DROPPED && widthOf(table) > columns; ++next) {
        std::erase_if(table,
                      [next](const Filled& filled) { return filled.column.dropped == next; });
    }
    std::for_each(table.rbegin(), table.rend(), [&](Filled& filled) {
        const std::size_t room = columns - std::min(columns, widthOf(table));
        filled.width += std::min(room, filled.widest - filled.width);
    });
    // Narrower than a level and a channel: the names are what is cut.
    const std::size_t others = widthOf(table) - table.back().width;
    table.back().width = std::min(table.back().width, std::max(columns, others + 1) - others);
}

} // namespace

std::vector<std::string> tableOf(const std::vector<Network>& networks, std::size_t columns) {
    std::vector<Filled> table;
    for (const Column& column : columnsInOrder) {
        table.emplace_back(column, networks);
    }
    if (columns > 0) {
        fit(table, columns - 1); // after the last column some terminals wrap
    }
    std::vector<std::string> lines;
    for (std::size_t row = 0; row <= networks.size(); ++row) {
        std::string line;
        for (const Filled& filled : table) {
            line += (line.empty() ? std::string() : std::string(GAP, ' ')) + filled.cell(row);
        }
        line.erase(line.find_last_not_of(' ') + 1);
        lines.push_back(std::move(line));
    }
    return lines;
}

} // namespace networks
