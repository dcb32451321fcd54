// SPDX-License-Identifier: MIT

#pragma once

#include <QVector>

class Walk;

using Step = void (*)(Walk&);

/// What is done at each unit, in this order.
const QVector<Step>& UnitSteps();

/// Searches the range of the settings and expects all units of the walk in the list, and no others.
void SearchUnits(Walk& walk);
