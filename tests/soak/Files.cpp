#include "tests/soak/Files.h"

#include "tests/support/workbooks/OptionsWorkbook.h"

#include <QProcess>

namespace {

constexpr int EepromSize = 2400;
constexpr int WorkbookRows = 22;

QByteArray RandomBytes(int size, QRandomGenerator& random)
{
    QByteArray bytes;
    while (bytes.size() < size) {
        bytes.append(static_cast<char>(random.bounded(256)));
    }
    return bytes;
}

QStringList Cells(const QString& text)
{
    QStringList cells;
    for (int row = 0; row < WorkbookRows; ++row) {
        cells.append(text.arg(row));
    }
    return cells;
}

} // namespace

Files::Files(QRandomGenerator random)
{
    Write("image.cyacd", RandomBytes(3000, random));
    Write("large.cyacd", RandomBytes(100000, random));
    Write("empty.cyacd", QByteArray());
    Write("eeprom.bin", RandomBytes(EepromSize, random));
    Write("one-line.txt", QByteArray(1000000, 'x'));
    Write("motors.txt",
        "Device Part Number: 4400.1290.02\nDevice Serial Number: 000129\n"
        "Azimuth Motor Configuration\nMax Speed: 500\nMax Speed: 99999\nRamp: -1\n");
    WriteOptionsWorkbook(Path("options.xlsx"), Cells("Entry %1"), Cells("<b>Description %1</b>"));
    for (const char* const name : {"image.cyacd", "eeprom.bin", "motors.txt", "options.xlsx"}) {
        WriteCutAndDamaged(QString::fromLatin1(name), random);
    }
    QDir(folder.path()).mkdir("a-folder");
    QFile::link("/dev/full", Path("full.txt"));
    QProcess::execute("mkfifo", {Path("pipe")});
}

QString Files::Pick(QRandomGenerator& random, bool forWriting) const
{
    QStringList names =
        QDir(folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    if (forWriting) {
        names.removeOne("pipe");
    }
    names.append("new.txt");
    return Path(names.at(random.bounded(names.size())));
}

void Files::Write(const QString& name, const QByteArray& content) const
{
    QFile file(Path(name));
    file.open(QIODevice::WriteOnly);
    file.write(content);
}

void Files::WriteCutAndDamaged(const QString& name, QRandomGenerator& random) const
{
    QFile file(Path(name));
    file.open(QIODevice::ReadOnly);
    QByteArray content = file.readAll();
    Write(QString("cut-") + name, content.left(random.bounded(content.size())));
    for (int count = 0; count < 10; ++count) {
        content[random.bounded(content.size())] = static_cast<char>(random.bounded(256));
    }
    Write(QString("damaged-") + name, content);
}
