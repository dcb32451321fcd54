// SPDX-License-Identifier: MIT

#pragma once

/// Whether this system has pipes and devices among its files, these below /dev.
bool HasDeviceFiles();
