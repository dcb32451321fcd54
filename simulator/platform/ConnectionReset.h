#pragma once

#include <cstdint>

namespace simulator::platform {

/// Makes the closing of this TCP socket reset the connection, whatever has been read or sent, where
/// it would close it in an orderly way. False when the system refuses.
bool ResetOnClose(std::intptr_t socketDescriptor);

} // namespace simulator::platform
