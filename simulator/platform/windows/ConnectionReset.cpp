// SPDX-License-Identifier: MIT

#include "simulator/platform/ConnectionReset.h"

#include <winsock2.h>

namespace simulator::platform {

bool ResetOnClose(std::intptr_t socketDescriptor)
{
    const linger dropEverything{1, 0};
    return setsockopt(static_cast<SOCKET>(socketDescriptor), SOL_SOCKET, SO_LINGER,
               reinterpret_cast<const char*>(&dropEverything), sizeof(dropEverything)) == 0;
}

} // namespace simulator::platform
