// What stands in the way of readings, in words.
#pragma once

#include <watch/Model.h>
#include <watch/StyledLine.h>

#include <string>
#include <vector>

namespace watch {

/// What keeps the source from bringing readings, in a sentence; empty when nothing does.
std::string aboutSource(const SourceState& source);

/// The most important first, each in as many lines as it takes; none while all is well.
std::vector<StyledLine> noticeLines(const Model& model, Moment now, std::size_t columns);

} // namespace watch
