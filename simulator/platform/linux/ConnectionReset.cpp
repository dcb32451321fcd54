// SPDX-License-Identifier: MIT

#include "simulator/platform/ConnectionReset.h"

#include <sys/socket.h>

namespace simulator::platform {

bool ResetOnClose(std::intptr_t socketDescriptor)
{
    const linger dropEverything{1, 0};
    return setsockopt(static_cast<int>(socketDescriptor), SOL_SOCKET, SO_LINGER, &dropEverything,
               sizeof(dropEverything)) == 0;
}

} // namespace simulator::platform
