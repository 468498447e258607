// A log as a person reads it: what repeats itself is shown once.
#pragma once

#include "run/LogKeeper.h"

#include <cstddef>
#include <vector>

namespace tesk5 {

/// A line of a folded log, or the mark of a repetition.
struct FoldedLine {
    const LoggedLine* line; ///< of a mark: the last line that it stands for
    std::size_t block = 0;  ///< of a mark: how many of the lines above it repeat; 0 for a line
    std::size_t times = 0;  ///< of a mark: how often they do, after the first time
};

/// `lines`, with one mark for all the blocks that repeat the block before them but for times and
/// numbers. A number that is a part of a word counts as text: "Lab2" and "Lab3" differ. Marks count
/// among the lines of a block. A block of more than 1000 lines is not recognised. Pure; any thread.
std::vector<FoldedLine> folded(const std::vector<const LoggedLine*>& lines);

} // namespace tesk5
