// SPDX-License-Identifier: MIT

#include "tests/support/platform/SystemFiles.h"

bool HasDeviceFiles()
{
    return true;
}

// A file with a setting of the kernel has the size of a page, whatever it holds.
const char* FileShorterThanItsSize()
{
    return "/sys/devices/system/cpu/possible";
}
