// What keeps a level from being measured, as findings for technicians.
#pragma once

#include <tesk5/ModuleInfo.h>

/// Listens with the adapter and says what it hears and, of the target that the parameters name, at
/// which level: or that it was not heard, or stands for radios whose levels differ. For
/// ModuleInfo::examine.
///
/// A thorough one blocks for 6 s at most: drivers take 4 s for a scan. A quick one asks once, and
/// finds only what keeps the adapter from hearing anything.
/// Failure: what goes wrong is a finding; what keeps the wireless service itself from answering is
/// left to the framework
/// Threads: the caller's
/// Platform: those of readings::LevelSource, WlanQueryInterface
void examineForLevels(const tesk5::DiagDevice& device, tesk5::ExaminationDepth depth,
                      tesk5::Findings& findings);
