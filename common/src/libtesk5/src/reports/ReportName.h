// Names of report files with parts that differ from run to run: "{serial}-{result}.json".
#pragma once

#include <tesk5/RunIdentity.h>

#include <string>
#include <utility>
#include <vector>

namespace tesk5 {

/// What the braces of a name can stand for, each with its value: "run", "time", "result",
/// "program", "pc", then the tags. "time" is that of the run's start, UTC, to the second.
using NameParts = std::vector<std::pair<std::string, std::string>>;
NameParts namePartsOf(const RunIdentity& identity, const std::string& result);

/// The same for a file that is written before the result is known: without "result".
NameParts namePartsOf(const RunIdentity& identity);

/// Whether `file` has braces that stand for something.
/// Failure: throws BadInput for braces that stand for nothing in `parts`; their values do not
/// matter
bool isNamedAnew(const std::string& file, const NameParts& parts);

/// `file` with the values in the place of their braces, and single braces for double ones. A value
/// stays within a part of the path: each character that a file system refuses or reads as more than
/// a letter becomes "%" and two hexadecimal digits, and a long value ends in a part of its SHA-256,
/// so that different values give different names.
/// Failure: as isNamedAnew()
std::string filledName(const std::string& file, const NameParts& parts);

/// `path` (UTF-8), or with "-2", "-3", ... before its extension when there is such a file already.
/// It is then an empty file, so that no other process takes the same name. Missing folders above it
/// are made.
/// Failure: none is reported. A name that cannot be a file is returned as it is.
std::string takenName(const std::string& path);

} // namespace tesk5
