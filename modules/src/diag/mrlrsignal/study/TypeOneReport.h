// What the command study says about one part whose level is known.
#pragma once

#include <study/StudyFile.h>

#include <string>
#include <vector>

namespace study {

/// The lines about a short study, without an indent.
std::vector<std::string> typeOneReport(const TypeOneResult& result);

} // namespace study
