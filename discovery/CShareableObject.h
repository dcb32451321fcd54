// SPDX-License-Identifier: MIT

#pragma once

#include "platform/Threads.h"

#include <QtGlobal>

/// Owns a system mutex. Nothing ever takes it: it guards none of the object's data.
class CShareableObject
{
    Q_DISABLE_COPY(CShareableObject)

public:
    CShareableObject();
    virtual ~CShareableObject();

    /// -1 when the system had no mutex to give.
    platform::SystemHandle GetMutexHandle() const;

private:
    platform::SystemHandle mutex = platform::InvalidHandle;
    [[maybe_unused]] quint16 reserved = 0;
};
