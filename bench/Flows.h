// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

class Table;

/// Drives the window through connecting, loading and sending, with units on loopback. Adds the time
/// that each takes, and the waits that the unit asks for. Must be called inside the program.
void MeasureFlows(Table& table, int repetitions);

/// Does the same with a search from the first to the last address of `range`, which must find
/// `units` units.
void MeasureSearch(Table& table, const QStringList& range, int units, int repetitions);

/// Does the same with a firmware image of 300 000 bytes. Adds the time above the waits for each of
/// its bytes, and the peak memory of a transfer beside the size of the image and one block.
void MeasureTransfer(Table& table, int repetitions);
