// SPDX-License-Identifier: MIT

#pragma once

#include "platform/NeighbourTable.h"

#include <QStringList>
#include <QVector>

#include <functional>

/// Stands in for platform/NeighbourTable.h: a table of the test's own, and a record of what was
/// asked of it. Every address is one text, dotted.
namespace ScriptedNeighbours {

/// An empty table, nothing recorded, nothing refused.
void Reset();

/// Adds a row behind the others. `mac` is six pairs of hexadecimal digits, in either case, with
/// colons.
void Add(const char* ip, const char* mac);

/// Takes all rows out.
void Empty();

/// The addresses in the table, in its order.
QStringList Addresses();

/// From now on only that many more rows can be deleted.
void RefuseDeletesAfter(int rows);

/// Called at the beginning of each call with its text, in the caller's thread.
void SetOnCall(std::function<void(const QString& call)> action);

/// What was asked, one text each, in order: "read", "delete IP", "resolve IP".
QStringList Calls();

/// The calls that begin with that word.
QStringList Calls(const QString& word);

/// What the latest resolution was given: the source address, the length and the eight bytes.
struct Request
{
    quint32 source;
    quint32 length;
    QVector<quint8> physicalAddress;
};
Request LatestResolution();

} // namespace ScriptedNeighbours
