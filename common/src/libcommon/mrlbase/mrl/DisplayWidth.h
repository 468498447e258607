// The width of a text on a terminal, where East Asian characters are two columns wide.
// All functions are pure and may be called from any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mrl {

/// Columns that the UTF-8 `text` takes: 2 for wide characters, 0 for marks that combine with the
/// character before, 1 for everything else. Controls must have been escaped (escapeControls()).
std::size_t columnsOf(std::string_view text);

/// `text` when it fits into `columns`; else as many of its first characters as fit together with
/// an ellipsis ("…").
std::string fittedToColumns(const std::string& text, std::size_t columns);

} // namespace mrl
