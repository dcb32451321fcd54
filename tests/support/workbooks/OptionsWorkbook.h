// SPDX-License-Identifier: MIT

#pragma once

#include <QStringList>

/// Writes a workbook of one sheet with these texts in the columns A and B. A null text leaves its
/// cell out. False when the file could not be written.
bool WriteOptionsWorkbook(
    const QString& path, const QStringList& names, const QStringList& descriptions = {});
