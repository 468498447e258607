#include <watch/View.h>

#include <watch/ListView.h>
#include <watch/TargetView.h>

#include <tesk5/Texts.h>

#include <span>

namespace watch {

namespace {

using tesk5::message;

StyledLine keysLine(const Model& model, std::size_t columns) {
    struct Key {
        const char* key;
        const char* text;
    };
    // The most important first: where there is no room, the rest is left out.
    constexpr Key OF_TARGET[] = {{"q", "WATCH_KEY_QUIT"},       {"r", "WATCH_KEY_REFERENCE"},
                                 {"t", "WATCH_KEY_TONE"},       {"b", "WATCH_KEY_BEST"},
                                 {"Esc", "WATCH_KEY_NETWORKS"}, {"x", "WATCH_KEY_NO_REFERENCE"}};
    constexpr Key OF_LIST[] = {
        {"q", "WATCH_KEY_QUIT"}, {"Enter", "WATCH_KEY_WATCH"}, {"↑↓", "WATCH_KEY_MARK"}};
    const std::span<const Key> keys =
        model.target() ? std::span<const Key>(OF_TARGET) : std::span<const Key>(OF_LIST);
    StyledLine line;
    for (const auto& [key, name] : keys) {
        StyledLine entry;
        entry.add(line.columns() > 0 ? "   " : " ")
            .add(key, Style::STRONG)
            .add(" " + message(name), Style::FAINT);
        if (line.columns() + entry.columns() <= columns) {
            line.add(entry);
        }
    }
    return line;
}

} // namespace

std::vector<std::string> frame(const Model& model, Moment now, Size size, bool colours) {
    std::vector<std::string> texts;
    if (size.rows == 0 || size.columns < 2) {
        return texts;
    }
    const std::size_t columns = size.columns - 1;
    const std::size_t rows = size.rows > 1 ? size.rows - 1 : 1;
    std::vector<StyledLine> lines = model.target() ? targetLines(model, now, columns, rows)
                                                   : listLines(model, now, columns, rows);
    lines.resize(rows);
    if (size.rows > 1) {
        lines.push_back(keysLine(model, columns));
    }
    texts.reserve(lines.size());
    for (const StyledLine& line : lines) {
        texts.push_back(line.text(columns, colours));
    }
    return texts;
}

} // namespace watch
