#pragma once

#include <QStringList>

class Table;

/// Drives the window through connecting, loading and sending, with units on loopback, and adds the
/// time that each takes beside the waits that the unit asks for. Must be called inside the program.
void MeasureFlows(Table& table, int repetitions);

/// The same with a search of the addresses from the first to the last of `range`, in which `units`
/// of them are units.
void MeasureSearch(Table& table, const QStringList& range, int units, int repetitions);

/// The same with a firmware image of 300 000 bytes, and what is left over for each of its bytes;
/// and the memory that the transfer takes at its peak beside the image and one block.
void MeasureTransfer(Table& table, int repetitions);
