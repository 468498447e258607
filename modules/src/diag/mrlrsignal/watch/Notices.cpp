#include <watch/Notices.h>

#include <watch/ViewTexts.h>

#include <tesk5/TextLayout.h>
#include <tesk5/Texts.h>

namespace watch {

namespace {

using tesk5::message;

constexpr std::size_t INDENT = 1;

struct Explanation {
    DWORD error;
    const char* key;
};
constexpr Explanation explanations[] = {
    {ERROR_NDIS_DOT11_POWER_STATE_INVALID, "WATCH_RADIO_OFF"},
    {ERROR_ACCESS_DENIED, "WATCH_DENIED"},
    {ERROR_SERVICE_NOT_ACTIVE, "WATCH_NO_SERVICE"},
};

std::string explained(DWORD error) {
    for (const Explanation& explanation : explanations) {
        if (explanation.error == error) {
            return message(explanation.key);
        }
    }
    return message("WATCH_FAILED", {{"Error", error}});
}

// What to think of the silence; empty when there is none.
std::string aboutSilence(const Model& model, Moment now) {
    if (!model.target()) {
        return model.list(now).empty() ? message("WATCH_LISTENING") : std::string();
    }
    const Track* const track = model.followed();
    if (track != nullptr && now - track->last()->at <= RECENT) {
        return {};
    }
    if (track != nullptr) {
        return message("WATCH_LOST");
    }
    return message(model.source().listed ? "WATCH_ONLY_OLD" : "WATCH_NOT_SEEN");
}

} // namespace

std::string aboutSource(const SourceState& source) {
    if (source.error != ERROR_SUCCESS) {
        return explained(source.error);
    }
    if (source.scanError == ERROR_ACCESS_DENIED) {
        return message("WATCH_SCAN_DENIED");
    }
    return source.scanError == ERROR_SUCCESS ? std::string() : explained(source.scanError);
}

std::vector<StyledLine> noticeLines(const Model& model, Moment now, std::size_t columns) {
    std::vector<StyledLine> lines;
    for (const std::string& text :
         {aboutSource(model.source()), aboutSilence(model, now), model.toneFailure()}) {
        if (text.empty()) {
            continue;
        }
        for (const std::string& line : tesk5::wrapped(text, columns - INDENT)) {
            StyledLine indented(" ");
            indented.add(line, Style::PROBLEM);
            lines.push_back(std::move(indented));
        }
    }
    return lines;
}

} // namespace watch
