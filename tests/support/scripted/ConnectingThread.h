// SPDX-License-Identifier: MIT

#pragma once

#include "link/CDeviceCommunication.h"

/// Waits for the thread that makes a connection. It runs beside the scripted clock, and on that
/// clock too when its connect fails: then the clock waits for it, and this does nothing.
inline void AwaitConnectingThread()
{
    if (QThread::currentThread() != TheDeviceCommunication()) {
        TheDeviceCommunication()->wait();
    }
}
