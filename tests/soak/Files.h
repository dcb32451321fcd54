// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/workbooks/OptionsWorkbook.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

/// The files that a random user comes across, in a folder of their own: what the tool reads, whole,
/// cut and damaged, and what is no file at all.
class Files
{
public:
    /// Makes them; `random` says where they are cut.
    explicit Files(QRandomGenerator random)
    {
        Write("image.cyacd", RandomBytes(3000, random));
        Write("large.cyacd", RandomBytes(100000, random));
        Write("empty.cyacd", QByteArray());
        Write("eeprom.bin", RandomBytes(2400, random));
        Write("one-line.txt", QByteArray(1000000, 'x'));
        Write("motors.txt",
            "Device Part Number: 4400.1290.02\nDevice Serial Number: 000129\n"
            "Azimuth Motor Configuration\nMax Speed: 500\nMax Speed: 99999\nRamp: -1\n");
        WriteOptionsWorkbook(
            Path("options.xlsx"), Cells("Entry %1"), Cells("<b>Description %1</b>"));
        for (const char* const name : {"image.cyacd", "eeprom.bin", "motors.txt", "options.xlsx"}) {
            WriteCutAndDamaged(name, random);
        }
        QDir(folder.path()).mkdir("a-folder");
        QFile::link("/dev/full", Path("full.txt"));
        QProcess::execute("mkfifo", {Path("pipe")});
    }

    QString Path(const QString& name) const { return folder.filePath(name); }

    /// One of them, or a name that nobody has. Nothing that a write would wait for when it is to be
    /// written.
    QString Pick(QRandomGenerator& random, bool forWriting) const
    {
        QStringList names =
            QDir(folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
        if (forWriting) {
            names.removeOne("pipe");
        }
        names.append("new.txt");
        return Path(names.at(random.bounded(names.size())));
    }

private:
    static QByteArray RandomBytes(int size, QRandomGenerator& random)
    {
        QByteArray bytes;
        while (bytes.size() < size) {
            bytes.append(static_cast<char>(random.bounded(256)));
        }
        return bytes;
    }

    // Of all rows of a workbook of options.
    static QStringList Cells(const QString& text)
    {
        QStringList cells;
        for (int row = 0; row < 22; ++row) {
            cells.append(text.arg(row));
        }
        return cells;
    }

    void Write(const QString& name, const QByteArray& content) const
    {
        QFile file(Path(name));
        file.open(QIODevice::WriteOnly);
        file.write(content);
    }

    void WriteCutAndDamaged(const QString& name, QRandomGenerator& random) const
    {
        QFile file(Path(name));
        file.open(QIODevice::ReadOnly);
        QByteArray content = file.readAll();
        Write("cut-" + name, content.left(random.bounded(content.size())));
        for (int count = 0; count < 10; ++count) {
            content[random.bounded(content.size())] = static_cast<char>(random.bounded(256));
        }
        Write("damaged-" + name, content);
    }

    QTemporaryDir folder;
};
