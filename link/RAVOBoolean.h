// SPDX-License-Identifier: MIT

#pragma once

#include <QtGlobal>

/// A boolean of one byte, 0 or 1.
using RAVOBoolean = quint8;
