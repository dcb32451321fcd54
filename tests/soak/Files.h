#pragma once

#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>

/// The files that a random user comes across, in a folder of their own: what the tool reads, whole,
/// cut and damaged, and what is no file at all.
class Files
{
public:
    /// Makes them; `random` says where they are cut.
    explicit Files(QRandomGenerator random);

    QString Path(const QString& name) const { return folder.filePath(name); }

    /// One of them, or a name that nobody has. Nothing that a write would wait for when it is to be
    /// written.
    QString Pick(QRandomGenerator& random, bool forWriting) const;

private:
    void Write(const QString& name, const QByteArray& content) const;
    void WriteCutAndDamaged(const QString& name, QRandomGenerator& random) const;

    QTemporaryDir folder;
};
