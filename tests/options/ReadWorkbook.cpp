// SPDX-License-Identifier: MIT

// Reads a workbook twice, as it is done for its two columns, and prints what the reader has of it.
// A program of its own, so that it can be given limits.

#include "options/CExcelReader.h"

#include <cstdio>

namespace {

void Read(const QString& path)
{
    CExcelReader reader;
    const char* const result = reader.ReadFile(path) ? "read" : "refused";
    std::printf("%s, sheets: %d, rows: %d, columns: %d\n", result, reader.GetSheetCount(),
        reader.GetRowCount(0), reader.GetColumnCount(0));
}

} // namespace

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        return 2;
    }
    const QString path = QString::fromLocal8Bit(arguments[1]);
    Read(path);
    Read(path);
    return 0;
}
