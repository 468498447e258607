// The view of one radio: its level, what else is known of it, and the last minute as a drawing.
#pragma once

#include <watch/Model.h>
#include <watch/StyledLine.h>

#include <vector>

namespace watch {

/// The lines above that of the keys: `rows` at most, one at least. What does not fit falls away:
/// first the drawing, then the large digits, the bar, and the facts from the last one on.
std::vector<StyledLine> targetLines(const Model& model, Moment now, std::size_t columns,
                                    std::size_t rows);

} // namespace watch
