// Journals as files: any number, of any size, whole or not.
#pragma once

#include "history/JournalEntry.h"

#include <functional>
#include <string>
#include <vector>

namespace tesk5 {

/// Lines that are longer count as broken: a run with a thousand measurements has less.
inline constexpr std::size_t LONGEST_JOURNAL_LINE = 0x100000;

/// A line that is no run.
struct BrokenLine {
    std::string file;   ///< as named
    std::size_t line;   ///< from 1
    const char* reason; ///< key of a text
};

/// What was in journals besides runs.
struct JournalRemains {
    static constexpr std::size_t MOST_NAMED = 10;

    std::vector<BrokenLine> broken; ///< the first MOST_NAMED
    std::size_t brokenLines = 0;
    std::size_t laterLines = 0; ///< of later versions
    std::size_t runs = 0;
};

/// Reads journals line by line, and hands each run to `use`. Empty lines count as nothing.
/// \param stop asked now and then; ends the reading
/// Failure: throws BadInput for a file that cannot be read
JournalRemains readJournals(const std::vector<std::string>& files,
                            const std::function<void(const JournalEntry&)>& use,
                            const std::function<bool()>& stop);

} // namespace tesk5
