// SPDX-License-Identifier: MIT

#pragma once

/// Whether this system has pipes and devices among its files, these below /dev.
bool HasDeviceFiles();

/// A file of which less can be read than its size, without an error. Null where there is none.
const char* FileShorterThanItsSize();
