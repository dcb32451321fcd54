// SPDX-License-Identifier: MIT

#include "hardware/CZKHardwareComponent.h"
#include "tests/support/Warnings.h"

#include <QDir>
#include <QtTest>

#include <shlobj.h>

namespace {

QString KnownFolder(const KNOWNFOLDERID& id)
{
    PWSTR path = nullptr;
    SHGetKnownFolderPath(id, 0, nullptr, &path);
    const QString text = QString::fromWCharArray(path);
    CoTaskMemFree(path);
    return text;
}

} // namespace

/// Where the images of the EEPROM go when nobody has set anything.
class ProgramDataTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void theImagesStandBelowTheSystemsFolderForTheDataOfPrograms()
    {
        const QString data = KnownFolder(FOLDERID_ProgramData);
        QVERIFY(QDir(data).exists());
        const QString directory = data + "\\Zelma-Kovinth\\VX440\\Eeprom\\";
        QCOMPARE(GetEepromDirectory(), directory);

        CZKHardwareComponent component(QString(), QString(), 0, 0, 4, 0);
        QVERIFY(component.SaveImage("image.bin", {1, 2, 3, 4}));
        QFile image(directory + "image.bin");
        QCOMPARE(image.size(), qint64(4));
        QVERIFY(image.remove());
    }
};

QTEST_GUILESS_MAIN(ProgramDataTest)
#include "ProgramDataTest.moc"
