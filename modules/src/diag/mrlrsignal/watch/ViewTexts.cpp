#include <watch/ViewTexts.h>

#include <tesk5/Number.h>
#include <tesk5/Texts.h>

#include <nativewifi/Channels.h>
#include <nativewifi/LinkQuality.h>

#include <algorithm>

namespace watch {

using tesk5::message;
using tesk5::Number;
using tesk5::quantity;

namespace {

std::string bandText(std::uint32_t mhz) {
    const std::optional<nativewifi::Band> band = nativewifi::bandOf(mhz);
    if (!band) {
        return {};
    }
    switch (*band) {
    case nativewifi::Band::GHZ_2_4:
        return numberText(2.4, "GHz", 1);
    case nativewifi::Band::GHZ_5:
        return numberText(5, "GHz", 0);
    case nativewifi::Band::GHZ_6:
        break;
    }
    return numberText(6, "GHz", 0);
}

std::string nameText(const readings::Target& target) {
    return target.ssid ? *target.ssid : target.bssid ? readings::bssidText(*target.bssid) : "";
}

} // namespace

std::string numberText(double value, const char* unit, int decimals) {
    return quantity(Number::rounded(value, decimals), unit).shownString().utf8();
}

std::string percentText(LONG dbm) {
    return quantity(Number(nativewifi::linkQuality(dbm)), "%").shownString().utf8();
}

double secondsBetween(Moment from, Moment to) {
    return std::chrono::duration<double>(std::max(to - from, Moment::zero())).count();
}

std::string ageText(const readings::Reading& reading, Moment now) {
    return numberText(secondsBetween(reading.at, now), SECONDS, 1);
}

// The channel with its band; empty when the system does not say.
std::string channelText(std::uint32_t mhz) {
    const std::string band = bandText(mhz);
    return band.empty() ? band : std::to_string(nativewifi::channelOf(mhz)) + " (" + band + ")";
}

std::string nameText(const readings::Reading& reading) {
    return reading.ssid.empty() ? message("WATCH_HIDDEN") : reading.ssid;
}

StyledLine titleLine(const Model& model) {
    StyledLine line(" ");
    const Track* const track = model.followed();
    if (!model.target()) {
        line.add(message("WATCH_ALL_NETWORKS"), Style::STRONG);
    } else if (track == nullptr) {
        line.add(nameText(*model.target()), Style::STRONG);
    } else {
        const readings::Reading& last = *track->last();
        line.add(nameText(last), Style::STRONG).add("  " + readings::bssidText(last.bssid));
        if (const std::string channel = channelText(last.mhz); !channel.empty()) {
            line.add("  " + message("WATCH_CHANNEL", {{"Channel", channel}}));
        }
        if (model.candidates() > 1) {
            line.add("  " + message("WATCH_ONE_OF", {{"Count", model.candidates()}}), Style::FAINT);
        }
    }
    return line.add("  " + model.adapter(), Style::FAINT);
}

StyledLine paceLine(const Model& model, double rate) {
    const SourceState& source = model.source();
    tesk5::Event::Variables variables = {{"Rate", quantity(Number::rounded(rate, 1), "")},
                                         {"Scans", source.scans}};
    if (source.scanEvery) {
        const bool whole = *source.scanEvery >= std::chrono::seconds(1);
        variables.emplace_back(
            "Every",
            numberText(secondsBetween(Moment::zero(), *source.scanEvery), SECONDS, whole ? 0 : 1));
    }
    const char* const key = source.scanEvery ? "WATCH_PACE_SCANS" : "WATCH_PACE_CONNECTION";
    return StyledLine(" ").add(message(key, variables), Style::FAINT);
}

void append(Lines& frame, const Lines& lines, std::size_t rows) {
    const std::size_t room = rows - std::min(rows, frame.size());
    frame.insert(frame.end(), lines.begin(),
                 lines.begin() + static_cast<std::ptrdiff_t>(std::min(room, lines.size())));
}

} // namespace watch
