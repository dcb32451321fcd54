// SPDX-License-Identifier: MIT

#include "tests/support/platform/SystemFiles.h"

bool HasDeviceFiles()
{
    return false;
}

const char* FileShorterThanItsSize()
{
    return nullptr;
}
