// The receive chains of one adapter, compared with each other.
#pragma once

#include <tesk5/DiagDevice.h>
#include <tesk5/TestResult.h>

namespace levels {

/// Measures the level of each receive chain from the access point that the parameters name.
///
/// One combined level cannot show that one of two leads is off: drivers report the stronger chain
/// or the sum, which then changes by 0 to 3 dB. Blocks for MaxSeconds at most, and a fraction of a
/// second more.
/// \return FAIL with an event for each chain that lies more than MaxImbalance below the strongest,
/// and when fewer than Chains tell a level; PASS otherwise; CANNOTRUN with an event where there are
/// no levels of chains, or one chain and nothing to compare it with; USERABORTED when the run is
/// interrupted
/// Threads: that of the run
/// Platform: those of readings::LevelSource and readings::ChainSource
tesk5::TestResult AntennaChainTest(const tesk5::DiagDevice& device);

} // namespace levels
