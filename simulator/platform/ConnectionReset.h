#pragma once

#include <cstdint>

/// The one thing that the simulator needs of the operating system and Qt does not offer.
namespace simulator::platform {

/// Makes the closing of this TCP socket reset the connection, whatever has been read or sent, where
/// it would close it in an orderly way. False when the system refuses.
bool ResetOnClose(std::intptr_t socketDescriptor);

} // namespace simulator::platform
