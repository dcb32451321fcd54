// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/scripted/ScriptedClock.h"
#include "tests/support/scripted/ScriptedNeighbours.h"
#include "tests/support/scripted/ScriptedThreads.h"

#include <QPair>
#include <QVector>

/// A host of the scripted network: its IP address and its MAC address.
using Host = QPair<const char*, const char*>;

/// Forgets all that was scripted.
inline void ResetScripts()
{
    ScriptedThreads::RunAll();
    ScriptedThreads::Reset();
    ScriptedClock::Reset();
    ScriptedNeighbours::Reset();
}

/// The hosts that answer to a search, from the end of its first pass on.
inline void LetAnswer(const QVector<Host>& hosts)
{
    ScriptedClock::SetDuringWait([hosts](unsigned milliseconds) {
        ScriptedThreads::RunAll();
        if (milliseconds == 100) {
            for (const Host& host : hosts) {
                ScriptedNeighbours::Add(host.first, host.second);
            }
        }
    });
}

/// A host that stays in the table, since nothing can be deleted from it.
inline void LetStay(const Host& host)
{
    ScriptedNeighbours::Add(host.first, host.second);
    ScriptedNeighbours::RefuseDeletesAfter(0);
}
