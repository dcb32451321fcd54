// SPDX-License-Identifier: MIT

#pragma once

#include "model/CDeviceDatabase.h"
#include "tests/support/PrivateMember.h"

struct UnsupportedFlag
{
    using Type = bool CDeviceDatabase::*;
    friend Type MemberOf(UnsupportedFlag);
};
template struct PrivateMember<UnsupportedFlag, &CDeviceDatabase::unsupported>;

/// Sets what GetUnsupportedFlag() of the model gives: it is there for units that cannot do what a
/// page offers, and nothing sets it yet. To be included once in a program.
inline void SetUnsupportedFlag(CDeviceDatabase& database, bool value)
{
    database.*MemberOf(UnsupportedFlag()) = value;
}
