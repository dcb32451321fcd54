#include "firmware/CTabLoadFirmware.h"
#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/simulator/FirmwareBlocks.h"
#include "tests/support/UnsupportedFlag.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"
#include "tests/support/scripted/ConnectingThread.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

using namespace firmwarestream;

namespace {

const QString Sent = "Firmware sent to device successfully!";
const QString TransmissionError = "An error occoured during transmission";
const QString UnknownError = "unknown error";
const QString Cancelled = "FW send cancelled!";
// The version is the rest of the unit's answer, its carriage return too.
const QString Updated = "Firmware Updated successfully to v3.2\r.";
const QString UpdateFailed = "Firmware Update Failed!";

// What the unit does at one firmware block; at the others it acknowledges.
struct Mishap
{
    int block;
    QByteArray answer;
};

// A unit as far as these tests need one. Frames are answered at once.
void Answer(const QByteArray& frame, const Mishap& mishap, int& blocks)
{
    if (frame == "*IDN?\r") {
        scripted::Deliver("ZELMA&KOVINTH,VX440,4400.1290.02/000129,3.2\r");
    } else if (frame == "CF0\r") {
        scripted::DeliverAfter(1000, QByteArray(75, '\0'));
    } else if (frame.startsWith("CF3\r")) {
        scripted::Deliver(blocks == mishap.block ? mishap.answer : "1\r");
        ++blocks;
    } else if (frame == "CF8\r") {
        scripted::Deliver("1\r");
    }
}

void BeUnit(const Mishap& mishap = {-1, {}})
{
    scripted::WhenSent(
        [mishap, blocks = 0](const QByteArray& frame) mutable { Answer(frame, mishap, blocks); });
}

// The frames that went out, or were to go out, without the clock.
QStringList Frames()
{
    return scripted::Actions().filter(QRegularExpression("^send"));
}

QString FrameOf(const QByteArray& frame)
{
    return QString("send ") + QString::fromLatin1(frame.toHex().toUpper());
}

QStringList FramesOf(const QByteArray& image, int blocks)
{
    QStringList frames;
    for (const QByteArray& block : Blocks(image).mid(0, blocks)) {
        frames.append(FrameOf("CF3\r" + block));
    }
    return frames;
}

QStringList FramesOf(const QByteArray& image)
{
    return FramesOf(image, -1) + QStringList{FrameOf("CF4\r" + Checksum(image))};
}

CTabLoadFirmware& Tab()
{
    return *MainWindow()->findChild<CTabLoadFirmware*>();
}

QPushButton* LoadButton()
{
    return Find<QPushButton>("btnLoadFirmware");
}

QPushButton* UpdateButton()
{
    return Find<QPushButton>("btnUpdateFirmware");
}

QString ShownFile()
{
    return Find<QLineEdit>("txtFirmwareFile")->text();
}

void Choose(const QString& path, QStringList* asked = nullptr)
{
    ClickAndChooseFile(
        Find<QToolButton>("btnSelectFirmware"), path, [asked](const QFileDialog& dialog) {
            if (asked != nullptr) {
                *asked << dialog.windowTitle() << dialog.nameFilters();
            }
        });
}

// Every text that the status line shows from now on.
QSharedPointer<QStringList> WatchStatus(QObject* context)
{
    const auto texts = QSharedPointer<QStringList>::create();
    QObject::connect(TheDeviceDatabase(), &QAbstractItemModel::dataChanged, context,
        [texts](const QModelIndex& cell) {
            if (cell.column() == 1) {
                texts->append(cell.data().toString());
            }
        });
    return texts;
}

// Counts the progress dialogs that come up.
class ShownDialogs : public QObject
{
public:
    ShownDialogs() { qApp->installEventFilter(this); }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const bool isDialog = qobject_cast<QProgressDialog*>(watched) != nullptr;
        count += isDialog && event->type() == QEvent::Show ? 1 : 0;
        return false;
    }

    int count = 0;
};

// Closes the progress dialog by its title bar once its value is there.
void CloseProgressAt(int value)
{
    auto* const watch = new QTimer(MainWindow());
    QObject::connect(watch, &QTimer::timeout, watch, [watch, value] {
        QProgressDialog* const dialog = VisibleProgress();
        if (dialog != nullptr && dialog->value() >= value) {
            watch->deleteLater();
            CloseByTitleBar(dialog);
        }
    });
    watch->start(0);
}

} // namespace

class TabLoadFirmwareTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void init()
    {
        WarningsFail::init();
        TheDeviceCommunication()->Disconnect();
        scripted::Reset();
        scripted::WhenSlept([](int) { AwaitConnectingThread(); });
        BeUnit();
        ShowPage("Update FW");
    }

    void atTheStartOnlyAFileCanBeChosen()
    {
        QCOMPARE(ShownFile(), QString());
        QVERIFY(Find<QLineEdit>("txtFirmwareFile")->isReadOnly());
        QVERIFY(Find<QToolButton>("btnSelectFirmware")->isEnabled());
        QVERIFY(!LoadButton()->isEnabled());
        QVERIFY(!UpdateButton()->isEnabled());
        QVERIFY(!Find<QLabel>("lblCompatibility")->isVisible());
        QCOMPARE(Find<QLabel>("lblCompatibility")->text(),
            "This tab is not compatible with this device!");
        QCOMPARE(Find<QLabel>("lblFirmwareFile")->text(), "Firmware File");
        QCOMPARE(Find<QToolButton>("btnSelectFirmware")->text(), "...");
        QCOMPARE(LoadButton()->text(), "Send FW to Device");
        QCOMPARE(UpdateButton()->text(), "Initiate FW Update");
        ConnectTo("127.0.0.1");
        QVERIFY(!LoadButton()->isEnabled());
        QVERIFY(!UpdateButton()->isEnabled());
        QVERIFY(!Find<QLabel>("lblCompatibility")->isVisible());
    }

    void aChosenFileShowsItsNameOnlyAndCanBeSentWhenConnected()
    {
        ConnectTo("127.0.0.1");
        QVERIFY(QDir(folder.path()).mkpath("a/long/path/to/images"));
        QStringList asked;
        Choose(MakeImage("x", "a/long/path/to/images/VX440 3.20.cyacd"), &asked);
        QCOMPARE(asked, (QStringList{"Select Firmware File", "files *.cyacd"}));
        QCOMPARE(ShownFile(), "VX440 3.20.cyacd");
        QVERIFY(LoadButton()->isEnabled());
        QVERIFY(!UpdateButton()->isEnabled());
    }

    void aCancelledChoiceEmptiesTheFieldAndDisablesTheSending()
    {
        BeginWith("x");
        QCOMPARE(ShownFile(), "image.cyacd");
        Choose(QString());
        QCOMPARE(ShownFile(), QString());
        QVERIFY(!LoadButton()->isEnabled());
    }

    void aFileChosenWithoutAConnectionCanBeSentOnceConnected()
    {
        Choose(MakeImage("x"));
        QVERIFY(!LoadButton()->isEnabled());
        ConnectTo("127.0.0.1");
        QVERIFY(LoadButton()->isEnabled());
    }

    void thePageServesAllButOldUnitsThatAreFlagged_data()
    {
        QTest::addColumn<QString>("firmware");
        QTest::addColumn<bool>("flagged");
        QTest::addColumn<bool>("served");
        QTest::newRow("new") << "3.0" << false << true;
        QTest::newRow("new and flagged") << "3.0" << true << true;
        QTest::newRow("old") << "2.99" << false << true;
        QTest::newRow("old and flagged") << "2.99" << true << false;
    }
    void thePageServesAllButOldUnitsThatAreFlagged()
    {
        QFETCH(QString, firmware);
        QFETCH(bool, flagged);
        QFETCH(bool, served);
        BeginWith("x");
        TheDeviceDatabase()->SetFirmwareVersion(firmware);
        SetUnsupportedFlag(*TheDeviceDatabase(), flagged);
        Tab().ConnectionStatusChanged();
        QCOMPARE(Tab().isEnabled(), served);
        QCOMPARE(LoadButton()->isEnabled(), served);
        QCOMPARE(Find<QLabel>("lblCompatibility")->isVisible(), !served);
        SetUnsupportedFlag(*TheDeviceDatabase(), false);
        Tab().ConnectionStatusChanged();
        QVERIFY(LoadButton()->isEnabled());
        QVERIFY(!Find<QLabel>("lblCompatibility")->isVisible());
    }

    void everyByteAndWaitOfATransfer_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("blocks");
        QTest::newRow("an empty file: one block of the head") << 0 << 1;
        QTest::newRow("1") << 1 << 1;
        QTest::newRow("1135") << 1135 << 1;
        QTest::newRow("1136: one full block") << 1136 << 1;
        QTest::newRow("1137: a second block of one byte") << 1137 << 2;
        QTest::newRow("1200") << 1200 << 2;
        QTest::newRow("2336: two full blocks") << 2336 << 2;
        QTest::newRow("12000") << 12000 << 11;
    }
    void everyByteAndWaitOfATransfer()
    {
        QFETCH(int, size);
        QFETCH(int, blocks);
        const QByteArray image = Image(size);
        BeginWith(image);
        const auto status = WatchStatus(LoadButton());
        Click(LoadButton());
        QCOMPARE(Frames(), FramesOf(image));
        QCOMPARE(Frames().size(), blocks + 1);
        // The input is drained before each frame; each block's answer is there at the first look.
        QList<int> sleeps;
        for (int block = 0; block < blocks; ++block) {
            sleeps << 10 << 1;
        }
        QCOMPARE(scripted::Sleeps(), sleeps << 10);
        QCOMPARE(*status, (QStringList{"Sending Firmware file to the Device ..", Sent}));
        QCOMPARE(StatusLine(), Sent);
        QVERIFY(VisibleProgress() == nullptr);
    }

    void theDialogTellsTheBytesHeadIncluded()
    {
        BeginWith(Image(1200));
        QString label;
        QPair<int, int> range;
        bool blocked = false;
        WhenShown<QProgressDialog>([&](QProgressDialog& dialog) {
            label = dialog.labelText();
            range = {dialog.minimum(), dialog.maximum()};
            CloseByTitleBar(MainWindow());
            blocked = MainWindow()->isVisible();
        });
        Click(LoadButton());
        QCOMPARE(label, "Sending 1264 bytes...");
        QCOMPARE(range, qMakePair(0, 1264));
        QVERIFY(blocked);
        QCOMPARE(StatusLine(), Sent);
    }

    void theDialogMovesWithEachByteUpToTheEnd()
    {
        BeginWith(Image(2000));
        QVector<int> valuesAtSends;
        QVector<bool> visibleAtSends;
        int blocks = 0;
        scripted::WhenSent([&](const QByteArray& frame) {
            if (frame.startsWith("CF3\r")) {
                valuesAtSends.append(
                    VisibleProgress() != nullptr ? VisibleProgress()->value() : -1);
            }
            Answer(frame, {-1, {}}, blocks);
        });
        Click(LoadButton());
        // The last byte of the first block, and the end of the stream.
        QCOMPARE(valuesAtSends, (QVector<int>{1199, 2064}));
    }

    void afterATransferTheUpdateIsEnabled()
    {
        BeginWith("x");
        Click(LoadButton());
        QVERIFY(UpdateButton()->isEnabled());
        QVERIFY(LoadButton()->isEnabled());
    }

    void aTransferCanBeRepeated()
    {
        const QByteArray image = Image(1500);
        BeginWith(image);
        Click(LoadButton());
        Click(LoadButton());
        QCOMPARE(Frames(), FramesOf(image) + FramesOf(image));
    }

    void aTransferThatGoesWrongSendsNothingMore_data()
    {
        QTest::addColumn<int>("block");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("text");
        const QMap<const char*, int> places{{"first", 0}, {"a middle", 2}, {"the last", 4}};
        for (auto place = places.cbegin(); place != places.cend(); ++place) {
            QTest::addRow("%s block refused", place.key())
                << place.value() << QByteArray("0\r") << TransmissionError;
            QTest::addRow("%s block not answered", place.key())
                << place.value() << QByteArray() << UnknownError;
            QTest::addRow("%s block answered otherwise", place.key())
                << place.value() << QByteArray("?!") << UnknownError;
            QTest::addRow("%s block answered by a 2", place.key())
                << place.value() << QByteArray("2\r") << UnknownError;
        }
    }
    void aTransferThatGoesWrongSendsNothingMore()
    {
        QFETCH(int, block);
        QFETCH(QByteArray, answer);
        const QByteArray image = Image(5000);
        BeginWith(image);
        Click(LoadButton()); // a good one before, whose flags are to go
        QVERIFY(UpdateButton()->isEnabled());
        BeUnit({block, answer});
        scripted::ForgetEvents();
        Click(LoadButton());
        QCOMPARE(Frames(), FramesOf(image, block + 1));
        QTEST(StatusLine(), "text");
        QVERIFY(!UpdateButton()->isEnabled());
        QVERIFY(LoadButton()->isEnabled());
        QVERIFY(VisibleProgress() == nullptr);
    }

    void aBrokenLinkEndsTheTransfer_data()
    {
        QTest::addColumn<int>("block");
        QTest::newRow("at the first block") << 0;
        QTest::newRow("at a middle block") << 2;
        QTest::newRow("at the last block") << 4;
    }
    void aBrokenLinkEndsTheTransfer()
    {
        QFETCH(int, block);
        const QByteArray image = Image(5000);
        BeginWith(image);
        scripted::FailSendsFrom(block + 1);
        Click(LoadButton());
        QCOMPARE(Frames(), FramesOf(image, block) + QStringList{"send fails"});
        QCOMPARE(StatusLine(), TransmissionError);
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QVERIFY(!UpdateButton()->isEnabled());
        QVERIFY(!LoadButton()->isEnabled());
    }

    void aChecksumThatCannotBeSentEndsWithoutAText()
    {
        const QByteArray image = Image(5000);
        BeginWith(image);
        scripted::FailSendsFrom(6);
        Click(LoadButton());
        QCOMPARE(Frames(), FramesOf(image, 5) + QStringList{"send fails"});
        QCOMPARE(StatusLine(), QString());
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QVERIFY(!UpdateButton()->isEnabled());
    }

    void closingTheDialogSendsNothingMore_data()
    {
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("blocks");
        QTest::newRow("in the first block") << 1 << 0;
        QTest::newRow("at the end of the first block") << 1199 << 0;
        QTest::newRow("at the start of the second block") << 1200 << 1;
        QTest::newRow("in a middle block") << 3000 << 2;
        QTest::newRow("at the last byte") << 5063 << 4;
        QTest::newRow("at the zeros behind the last byte") << 5064 << 4;
    }
    void closingTheDialogSendsNothingMore()
    {
        QFETCH(int, value);
        QFETCH(int, blocks);
        const QByteArray image = Image(5000);
        BeginWith(image);
        Click(LoadButton());
        scripted::ForgetEvents();
        CloseProgressAt(value);
        Click(LoadButton());
        QCOMPARE(Frames(), FramesOf(image, blocks));
        QCOMPARE(StatusLine(), Cancelled);
        QVERIFY(!UpdateButton()->isEnabled());
        QVERIFY(VisibleProgress() == nullptr);
    }

    void aFileThatIsGoneSendsNothing()
    {
        BeginWith(Image(100));
        Click(LoadButton()); // its last acknowledgement was a good one
        scripted::ForgetEvents();
        QVERIFY(QFile::remove(folder.filePath("image.cyacd")));
        const ShownDialogs dialogs;
        Click(LoadButton());
        QCOMPARE(Frames(), QStringList());
        QCOMPARE(StatusLine(), QString());
        QCOMPARE(dialogs.count, 1);
        QVERIFY(VisibleProgress() == nullptr);
        QVERIFY(!UpdateButton()->isEnabled());
    }

    void aFileThatCannotBeOpenedSendsNothingAndIsNamed()
    {
        BeginWith(Image(100));
        Click(LoadButton());
        scripted::ForgetEvents();
        const QString path = folder.filePath("image.cyacd");
        QVERIFY(QFile::remove(path));
        QVERIFY(QDir().mkdir(path));
        Click(LoadButton());
        QVERIFY(QDir().rmdir(path));
        QCOMPARE(Frames(), QStringList());
        QCOMPARE(StatusLine(), path + " File could not be found or open");
        QVERIFY(!UpdateButton()->isEnabled());
    }

    // It would wait here for ever.
    void aPipeSendsNothingAndIsNamed()
    {
        BeginWith(Image(100));
        const QString path = folder.filePath("image.cyacd");
        QVERIFY(QFile::remove(path));
        if (QProcess::execute("mkfifo", {path}) != 0) {
            QSKIP("this system has no pipes with a name");
        }
        Click(LoadButton());
        QVERIFY(QFile::remove(path));
        QCOMPARE(Frames(), QStringList());
        QCOMPARE(StatusLine(), path + " File could not be found or open");
        QVERIFY(!UpdateButton()->isEnabled());
    }

    void withoutAConnectionNothingIsSent()
    {
        BeginWith(Image(100));
        Click(LoadButton());
        TheDeviceCommunication()->Disconnect(); // which tells no one
        scripted::ForgetEvents();
        Click(LoadButton());
        QCOMPARE(Frames(), QStringList());
        QCOMPARE(StatusLine(), "Not connected to any device.");
        QVERIFY(UpdateButton()->isEnabled()); // the flags are as they were
    }

    void aSentImageCanBeInstalledAfterANewConnection()
    {
        BeginWith(Image(100));
        Click(LoadButton());
        scripted::FailSendsFrom(1);
        ShowPage("Azimuth Configuration");
        Click(Find<QPushButton>("btnSendToDevice"));
        ShowPage("Update FW");
        QVERIFY(!UpdateButton()->isEnabled());
        scripted::FailSendsFrom(1000);
        ConnectTo("127.0.0.1");
        QVERIFY(UpdateButton()->isEnabled());
    }

    void everyWaitAndTextOfAnUpdate()
    {
        BeginWith(Image(100));
        Click(LoadButton());
        scripted::ForgetEvents();
        const auto status = WatchStatus(UpdateButton());
        Click(UpdateButton());

        QStringList before = scripted::Events();
        const QStringList after = before.mid(before.indexOf("close"));
        before = before.mid(0, before.size() - after.size());
        QCOMPARE(before.takeFirst(), "sleep 10");
        const QString start = before.takeFirst();
        QVERIFY(start.startsWith(FrameOf("CF5\r")));
        QCOMPARE(start.size(), FrameOf("CF5\r").size() + 2 * 255);
        QCOMPARE(before, QVector<QString>(300, "sleep 100").toList());
        QVERIFY(after.contains("resolve 127.0.0.1"));
        const QStringList frames = after.filter(QRegularExpression("^send"));
        QCOMPARE(frames, (QStringList{FrameOf("*IDN?\r"), FrameOf("CF8\r")}));

        QCOMPARE(status->first(), "Updating firmware ..");
        QVERIFY(status->contains("Validating Firmware Update .. "));
        QCOMPARE(StatusLine(), Updated);
        QCOMPARE(ConnectionLine(), "Connected to 127.0.0.1");
        QVERIFY(!UpdateButton()->isEnabled());
    }

    // The buttons are as they were when the link went down, until the tab has something to do.
    void afterAnUpdateTheNextTransferBeginsWithAFile()
    {
        BeginWith(Image(100));
        Click(LoadButton());
        Click(UpdateButton());
        QVERIFY(!LoadButton()->isEnabled());
        Choose(MakeImage("x"));
        QVERIFY(LoadButton()->isEnabled());
        QVERIFY(!UpdateButton()->isEnabled());
        Click(LoadButton());
        QVERIFY(UpdateButton()->isEnabled());
    }

    void theUpdatesDialogCannotBeClosedAndStaysUntilTheValidation()
    {
        BeginWith(Image(100));
        Click(LoadButton());
        QStringList labels;
        QVector<int> values;
        QVector<int> flags;
        bool openAtValidation = false;
        int blocks = 0;
        scripted::WhenSlept([&](int) {
            AwaitConnectingThread();
            if (values.size() < 300 && VisibleProgress() != nullptr) {
                values.append(VisibleProgress()->value());
                labels.append(VisibleProgress()->labelText());
                flags.append(int(VisibleProgress()->windowFlags()));
            }
        });
        scripted::WhenSent([&](const QByteArray& frame) {
            if (frame == "CF8\r") {
                openAtValidation = VisibleProgress() != nullptr;
            }
            Answer(frame, {-1, {}}, blocks);
        });
        Click(UpdateButton());
        // It comes up at its second value.
        for (int pass = 1; pass < 300; ++pass) {
            QCOMPARE(values.value(pass - 1), pass);
            QCOMPARE(labels.value(pass - 1), "Firmware Update in progress... ");
            QCOMPARE(flags.value(pass - 1), 0x02001001);
        }
        QVERIFY(openAtValidation);
        QVERIFY(VisibleProgress() == nullptr);
        QVERIFY(MainWindow()->findChild<QProgressDialog*>() == nullptr);
    }

    void aRefusedValidationStillReadsAsSuccess()
    {
        BeginWith(Image(100));
        Click(LoadButton());
        int blocks = 0;
        scripted::WhenSent([&](const QByteArray& frame) {
            if (frame == "CF8\r") {
                scripted::Deliver("0\r");
            } else {
                Answer(frame, {-1, {}}, blocks);
            }
        });
        Click(UpdateButton());
        QCOMPARE(StatusLine(), Updated);
        QCOMPARE(int(TheDeviceCommunication()->GetLastResult()), 0);
    }

    void aSilentValidationStillReadsAsSuccess()
    {
        BeginWith(Image(100));
        Click(LoadButton());
        int blocks = 0;
        scripted::WhenSent([&](const QByteArray& frame) {
            if (frame != "CF8\r") {
                Answer(frame, {-1, {}}, blocks);
            }
        });
        Click(UpdateButton());
        QCOMPARE(StatusLine(), Updated);
        QCOMPARE(int(TheDeviceCommunication()->GetLastResult()), 2);
    }

    void aUnitThatDoesNotComeBackFailsTheUpdate()
    {
        BeginWith(Image(100));
        Click(LoadButton());
        scripted::ForgetEvents();
        scripted::SetConnectResult(scripted::ConnectResult::Fails);
        Click(UpdateButton());
        QCOMPARE(scripted::Events().count("open 1"), 4);
        QVERIFY(!Frames().contains(FrameOf("CF8\r")));
        QCOMPARE(StatusLine(), UpdateFailed);
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QVERIFY(VisibleProgress() == nullptr);
        QVERIFY(!LoadButton()->isEnabled());
        QVERIFY(!UpdateButton()->isEnabled());
    }

    void aValidationThatCannotBeSentFailsTheUpdate()
    {
        BeginWith(Image(100));
        Click(LoadButton());
        scripted::FailSendsFrom(3); // behind the start of the update and the identity
        Click(UpdateButton());
        QCOMPARE(StatusLine(), UpdateFailed);
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QVERIFY(VisibleProgress() == nullptr);
    }

    void aValidationWithoutAConnectionFails()
    {
        scripted::ForgetEvents();
        QCOMPARE(int(Tab().ValidateFirmwareUpdate()), 0);
        QCOMPARE(StatusLine(), UpdateFailed);
        QCOMPARE(Frames(), QStringList());
        ConnectTo("127.0.0.1");
        QCOMPARE(int(Tab().ValidateFirmwareUpdate()), 1);
    }

private:
    QString MakeImage(const QByteArray& image, const char* name = "image.cyacd")
    {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(image) != image.size()) {
            return {};
        }
        return file.fileName();
    }

    void BeginWith(const QByteArray& image)
    {
        ConnectTo("127.0.0.1");
        Choose(MakeImage(image));
        scripted::ForgetEvents();
    }

    QTemporaryDir folder;
};

VX440_WINDOW_TEST_MAIN(TabLoadFirmwareTest)
#include "TabLoadFirmwareTest.moc"
