// SPDX-License-Identifier: MIT

#pragma once

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

/// What such a disk gives a file at a time.
constexpr int DiskPage = 4096;

/// Runs this program again where a disk of 64 kB is mounted, which goes with it. `folderVariable`
/// names the environment variable that tells the second run the disk's folder. The second run's
/// exit code; -1 where the system does not let the test mount a disk.
inline int RunAgainOnASmallDisk(const char* folderVariable)
{
    const QTemporaryDir folder;
    const QStringList words{"-m", "sh", "-c",
        "mount -t tmpfs -o size=64k none \"$1\" && shift && exec \"$@\"", "sh", folder.path()};
    const QString unshare = "unshare";
    if (QProcess::execute(unshare, words + QStringList{"true"}) != 0) {
        return -1;
    }
    qputenv(folderVariable, QFile::encodeName(folder.path()));
    return QProcess::execute(unshare, words + QStringList{QCoreApplication::applicationFilePath()});
}

/// Opens `rest`, a file on that disk, and writes to it until nothing more goes on the disk but what
/// the page of another file still has room for. False when it cannot, or finds another disk.
inline bool FillSmallDisk(QFile& rest)
{
    if (!rest.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        return false;
    }
    const QByteArray page(DiskPage, 'x');
    int pages = 0;
    while (pages <= 16 && rest.write(page) == page.size()) {
        ++pages;
    }
    return pages > 0 && pages <= 16;
}
