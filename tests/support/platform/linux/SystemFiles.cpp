// SPDX-License-Identifier: MIT

#include "tests/support/platform/SystemFiles.h"

bool HasDeviceFiles()
{
    return true;
}
