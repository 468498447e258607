// How much room a text takes on a terminal, where East Asian characters are two columns wide.
// All functions are pure and may be called from any thread.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mrl {

/// Columns that the UTF-8 `text` takes: 2 for wide characters, 0 for marks that stand on the
/// character before, 1 for everything else. Controls are no business of this; make them visible
/// first.
std::size_t columnsOf(std::string_view text);

/// `text`, or as many of its first characters as fit into `columns` with an ellipsis ("…") behind
/// them.
std::string fittedToColumns(const std::string& text, std::size_t columns);

} // namespace mrl
