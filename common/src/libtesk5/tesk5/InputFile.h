// Files that the command line of a module's command names.
#pragma once

#include <cstddef>
#include <string>

namespace tesk5 {

/// The bytes of the ordinary file `path` (UTF-8).
/// \param limit the greatest size in bytes
/// Failure: throws BadInput with the reason
std::string readInputFile(const std::string& path, std::size_t limit);

} // namespace tesk5
