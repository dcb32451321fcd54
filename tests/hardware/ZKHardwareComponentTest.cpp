// SPDX-License-Identifier: MIT

#include "hardware/CZKHardwareComponent.h"
#include "tests/hardware/EepromImages.h"
#include "tests/support/PrivateMember.h"
#include "tests/support/Warnings.h"

#include <QDir>
#include <QTemporaryDir>
#include <QtTest>

#include <type_traits>

struct FilePath
{
    using Type = QString CZKHardwareComponent::*;
    friend Type MemberOf(FilePath);
};
template struct PrivateMember<FilePath, &CZKHardwareComponent::FilePath>;

namespace {

constexpr char Variable[] = "PROGRAMDATA";

const QString Tail = QDir::toNativeSeparators("/Zelma-Kovinth/VX440/Eeprom/");

const QByteArray GoodBlock = Block("15CD5B07", "VX440"); // 123456789

const QStringList GoodRow =
    Texts("VX440|VX440|123456/789|1234.5678.02|02|03|01.05|02.10|2026-03-09");
const QStringList NoBlockRow = Texts("VX440|Not loaded|--|--|--|--|--|--");
const QStringList EmptyBlockRow =
    Texts("VX440||000000/000|0000.0000.00|00|00|00.00|00.00|1980-00-00");

struct Component : CZKHardwareComponent
{
    explicit Component(quint8 group = 0)
        : CZKHardwareComponent("directory", "VX440", 3, 0, 64, group)
    {
    }
};

static_assert(std::has_virtual_destructor<CZKHardwareComponent>::value, "it is made to be derived");

bool Parse(CZKHardwareComponent& component, const QByteArray& bytes)
{
    const QVector<uchar> image = Image(bytes);
    bool ok = false;
    const bool result = component.ParseImage(image, ok);
    bool otherwise = true;
    return result == ok && component.ParseImage(image, otherwise) == otherwise && result &&
           image == Image(bytes);
}

QStringList Row(CZKHardwareComponent& component, quint8 group = 0)
{
    QStringList texts;
    component.AppendRowTexts(texts, group);
    return texts;
}

} // namespace

class ZKHardwareComponentTest : public WarningsFail
{
    Q_OBJECT

    QString EepromDirectory() const { return folder->path() + Tail; }

    QScopedPointer<QTemporaryDir> folder;

private slots:
    void init()
    {
        WarningsFail::init();
        folder.reset(new QTemporaryDir);
        qputenv(Variable, QFile::encodeName(folder->path()));
    }

    void theColumnsHaveTheirNamesInOrder()
    {
        QCOMPARE(BoardDataColumns, Texts("Component|Name|Serial No.|Part No.|Variant|HW code|Prod. "
                                         "Index|Test Instruction Index|Prod. Date"));
    }

    // The variable is read anew on every call. A directory that is there is left as it is.
    void theDirectoryIsMadeOnTheWayBelowProgramData()
    {
        const QTemporaryDir other;
        for (const QString& data : {folder->path(), other.path(), folder->path()}) {
            qputenv(Variable, QFile::encodeName(data));
            QCOMPARE(GetEepromDirectory(), data + Tail);
            QVERIFY(QDir(data + Tail).exists());
            QVERIFY(Component().SaveImage("kept", {}));
        }
        GetEepromDirectory();
        QCOMPARE(QDir(EepromDirectory()).entryList(QDir::Files), Texts("kept"));
    }

    // The test's user may not make a directory there; in a container he may, and it goes again.
    void withoutTheVariableThePathStartsAtTheSeparator()
    {
        const QString top = "/Zelma-Kovinth";
        const bool wasThere = QDir(top).exists();
        qunsetenv(Variable);
        QCOMPARE(GetEepromDirectory(), Tail);
        if (!wasThere) {
            QDir(top).removeRecursively();
        }
    }

    void aDirectoryThatCannotBeMadeIsNotReported()
    {
        const QString missing = folder->filePath("missing");
        qputenv(Variable, QFile::encodeName(missing));
        QCOMPARE(GetEepromDirectory(), missing + Tail);
        QVERIFY(!QDir(missing).exists());
    }

    void aNewComponentHasNoBlock()
    {
        Component component;
        QCOMPARE(Row(component, 0), NoBlockRow);
        QCOMPARE(Row(component, 1), NoBlockRow);
        QCOMPARE(component.*MemberOf(FilePath()), QDir::toNativeSeparators("directory/VX440.bin"));
        QVERIFY(!QDir("directory").exists());
    }

    // With 8 bytes the header alone would fit.
    void anImageIsJudgedByItsLength()
    {
        for (int size = 0; size <= RegionSize; ++size) {
            Component component;
            QCOMPARE(Parse(component, Filled(GoodBlock, RegionSize).left(size)), size >= 44);
            QCOMPARE(Row(component), size <= 8 ? NoBlockRow : size < 44 ? EmptyBlockRow : GoodRow);
        }
    }

    void anImageOfAnotherTypeIsRefused()
    {
        for (const int type : {0, 1, 3, 100, 110, 120, 200, 300, 0x0200, 65535}) {
            Component component;
            QVERIFY2(!Parse(component, OfType(GoodBlock, type)), qPrintable(QString::number(type)));
            QCOMPARE(Row(component), NoBlockRow);
        }
    }

    void aRefusedHeaderKeepsTheOldBlock()
    {
        Component component;
        QVERIFY(Parse(component, GoodBlock));
        for (const QByteArray& refused :
            {OfType(GoodBlock, 100), GoodBlock.left(8), QByteArray(44, '\xFF'), QByteArray()}) {
            QVERIFY(!Parse(component, refused));
            QCOMPARE(Row(component), GoodRow);
        }
    }

    void aBodyCutShortTakesTheOldBlockAway()
    {
        Component component;
        QVERIFY(Parse(component, GoodBlock));
        QVERIFY(!Parse(component, GoodBlock.left(43)));
        QCOMPARE(Row(component), EmptyBlockRow);
        QVERIFY(Parse(component, GoodBlock));
        QCOMPARE(Row(component), GoodRow);
    }

    void onlyItsOwnGroupIsAnswered()
    {
        for (const int own : {0, 1, 255}) {
            Component component(static_cast<quint8>(own));
            QVERIFY(Parse(component, GoodBlock));
            for (const int asked : {0, 1, 255}) {
                QCOMPARE(Row(component, static_cast<quint8>(asked)),
                    own == asked ? GoodRow : QStringList());
            }
        }
    }

    void textsAreAppendedBehindThoseThatAreThere()
    {
        Component component;
        QStringList texts = Texts("first");
        component.AppendRowTexts(texts, 0);
        QCOMPARE(texts, Texts("first") + NoBlockRow);
    }

    // The last one is printed as negative.
    void anImageIsNamedAfterItsSerialNumber()
    {
        const std::pair<const char*, const char*> rows[] = {
            {"15CD5B07", "VX440Read_VX440_123456.bin"},
            {"D2040000", "VX440Read_VX440_001234.bin"},
            {"00000080", "VX440Read_VX440_-21474.bin"},
        };
        for (const auto& [littleEndian, name] : rows) {
            Component component;
            QVERIFY(Parse(component, Block(littleEndian, "any")));
            QCOMPARE(component.ReadImageFileName(), name);
        }
    }

    void aSavedImageIsTheFile()
    {
        for (const QByteArray& bytes :
            {QByteArray(5000, 'x'), Filled({}, RegionSize), QByteArray()}) {
            QVERIFY(Component().SaveImage("a.bin", Image(bytes)));
            QCOMPARE(Content(EepromDirectory() + "a.bin"), bytes); // what stood there is replaced
            QCOMPARE(QDir(EepromDirectory()).entryList(QDir::Files), Texts("a.bin"));
        }
    }

    void whereNoFileCanBeMadeNothingIsSaved()
    {
        QDir().mkpath(EepromDirectory() + "taken");
        QFile file(folder->filePath("file"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        // The directory cannot be made; a file has its name; a directory has the file's name.
        const std::pair<const char*, const char*> rows[] = {
            {"missing", "a.bin"}, {"file", "a.bin"}, {"", "taken"}};
        for (const auto& [data, name] : rows) {
            qputenv(Variable, QFile::encodeName(folder->filePath(data)));
            QVERIFY2(!Component().SaveImage(name, Image(GoodBlock)), data);
            QVERIFY(!QDir(folder->filePath("missing")).exists());
        }
    }

    // Neither a file that is read-only nor a new one in a folder that is.
    void anOrdinaryUsersClosedFilesAreNotReplaced()
    {
        for (const QString closed : {"a.bin", ""}) {
            QVERIFY(Component().SaveImage("a.bin", Image("before")));
            const QString path = EepromDirectory() + closed;
            const QFile::Permissions open = QFile::permissions(path);
            QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
            if (QFileInfo(path).isWritable()) {
                QSKIP("this user may write every file");
            }
            const QString name = closed.isEmpty() ? "b.bin" : closed;
            QVERIFY(!Component().SaveImage(name, Image(GoodBlock)));
            QCOMPARE(Content(EepromDirectory() + "a.bin"), QByteArray("before"));
            QVERIFY(QFile::setPermissions(path, open));
        }
    }
};

QTEST_GUILESS_MAIN(ZKHardwareComponentTest)

#include "ZKHardwareComponentTest.moc"
