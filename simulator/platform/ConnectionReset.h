// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace simulator::platform {

/// Lets the closing of this TCP socket reset the connection, whatever has been read or sent,
/// instead of an orderly close. False when the system refuses.
bool ResetOnClose(std::intptr_t socketDescriptor);

} // namespace simulator::platform
