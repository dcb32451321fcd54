#pragma once

/// Whether this system has devices among its files, below /dev.
bool HasDeviceFiles();
