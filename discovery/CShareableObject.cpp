// SPDX-License-Identifier: MIT

#include "discovery/CShareableObject.h"

CShareableObject::CShareableObject()
    : mutex(platform::CreateMutex())
{
}

CShareableObject::~CShareableObject()
{
    platform::CloseMutex(mutex);
    mutex = platform::InvalidHandle;
}

platform::SystemHandle CShareableObject::GetMutexHandle() const
{
    return mutex;
}
