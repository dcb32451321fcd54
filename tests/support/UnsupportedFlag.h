// SPDX-License-Identifier: MIT

#pragma once

#include "model/CDeviceDatabase.h"

/// Sets what GetUnsupportedFlag() of the model gives: it is there for units that cannot do what a
/// page offers, and nothing sets it yet. An explicit instantiation may name a private field. To be
/// included once in a program.
template<bool CDeviceDatabase::*Flag>
struct UnsupportedFlagSetter
{
    friend void SetUnsupportedFlag(CDeviceDatabase& database, bool value)
    {
        database.*Flag = value;
    }
};
void SetUnsupportedFlag(CDeviceDatabase& database, bool value);
template struct UnsupportedFlagSetter<&CDeviceDatabase::unsupported>;
