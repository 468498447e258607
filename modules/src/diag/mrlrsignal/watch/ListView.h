// The view of all networks that are heard, of which one is marked.
#pragma once

#include <watch/Model.h>
#include <watch/StyledLine.h>

#include <vector>

namespace watch {

/// The lines above that of the keys: `rows` at most, one at least. The list scrolls with the mark.
std::vector<StyledLine> listLines(const Model& model, Moment now, std::size_t columns,
                                  std::size_t rows);

} // namespace watch
