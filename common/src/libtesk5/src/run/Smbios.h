// What a PC's firmware says of the PC: its SMBIOS tables, as the system hands them out.
#pragma once

#include <tesk5/RunIdentity.h>

#include <string_view>

namespace tesk5 {

/// Sets maker, model and serial from the first structure of type 1 in `structures`, which the
/// firmware has written: damaged ones, and numbers of strings that are not there, set nothing.
/// Source: DMTF DSP0134, sections 6.1 and 7.2
void setFromFirmware(std::string_view structures, PcIdentity& pc);

} // namespace tesk5
