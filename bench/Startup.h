// SPDX-License-Identifier: MIT

#pragma once

class Table;

/// Starts the tool and an empty dialog in turn, each as a process of its own. Adds the time until
/// the window is painted, and the most memory that the process had until then.
void MeasureStartup(Table& table, int repetitions);
