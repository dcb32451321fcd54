// SPDX-License-Identifier: MIT

// Feeds every file of a fuzz target's corpus to the target, which aborts at what it finds wrong.

#include "tests/fuzz/FuzzTarget.h"

#include <QDir>
#include <QFile>

#include <cstdio>

int main()
{
    const QDir corpus(VX440_CORPUS);
    const QStringList names = corpus.entryList(QDir::Files);
    for (const QString& name : names) {
        std::printf("%s\n", qPrintable(name));
        std::fflush(stdout);
        QFile file(corpus.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) {
            return 1;
        }
        const QByteArray input = file.readAll();
        LLVMFuzzerTestOneInput(
            reinterpret_cast<const uint8_t*>(input.constData()), static_cast<size_t>(input.size()));
    }
    return names.isEmpty() ? 1 : 0;
}
