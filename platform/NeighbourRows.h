#pragma once

#include "platform/NeighbourTable.h"

#include <vector>

/// For the sources of each system.
namespace platform {

/// Appends all of the system's neighbours, in its own order, but for those of loopback, multicast
/// and broadcast. 0, or the system's error number.
unsigned ReadNeighbourRows(std::vector<NeighbourRow>& rows);

} // namespace platform
