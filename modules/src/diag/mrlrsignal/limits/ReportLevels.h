// The levels of units in the JSON reports of their measurements.
#pragma once

#include <string>
#include <vector>

namespace limits {

/// The level of each unit, in dBm.
/// \param path a JSON report that the program wrote, or a folder with one for each unit: its files
/// that end with ".json", in the order of their names (UTF-8)
/// Failure: throws tesk5::BadInput, also for a report without a level or with several, for reports
/// about different access points, some with a calibration and some without, and for a measurement
/// that is there twice
std::vector<double> levelsInReports(const std::string& path);

/// Whether `path` is for levelsInReports(): a folder, or a file that ends with ".json".
bool namesReports(const std::string& path);

} // namespace limits
