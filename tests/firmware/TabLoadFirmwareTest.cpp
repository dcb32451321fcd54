// SPDX-License-Identifier: MIT

#include "firmware/CTabLoadFirmware.h"
#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/simulator/FirmwareBlocks.h"
#include "tests/support/Notified.h"
#include "tests/support/PrivateMember.h"
#include "tests/support/UnsupportedFlag.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"
#include "tests/support/platform/SystemFiles.h"
#include "tests/support/scripted/ConnectingThread.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>
#include <QtTest>

using namespace firmwarestream;

struct LastResult
{
    using Type = quint16 CDeviceCommunication::*;
    friend Type MemberOf(LastResult);
};
template struct PrivateMember<LastResult, &CDeviceCommunication::lastResult>;

struct FirmwareSent
{
    using Type = bool CTabLoadFirmware::*;
    friend Type MemberOf(FirmwareSent);
};
template struct PrivateMember<FirmwareSent, &CTabLoadFirmware::firmwareSent>;

struct UpdatePendingValidation
{
    using Type = bool CTabLoadFirmware::*;
    friend Type MemberOf(UpdatePendingValidation);
};
template struct PrivateMember<UpdatePendingValidation, &CTabLoadFirmware::updatePendingValidation>;

namespace {

const QString Sending = "Sending Firmware file to the Device ..";
const QString Sent = "Firmware sent to device successfully!";
const QString TransmissionError = "An error occoured during transmission";
const QString UnknownError = "unknown error";
const QString Cancelled = "FW send cancelled!";
// The version is the rest of the unit's answer, its carriage return too.
const QString Updated = "Firmware Updated successfully to v3.2\r.";
const QString UpdateFailed = "Firmware Update Failed!";

// What the unit does at one firmware block, and how it answers a validation.
struct Mishap
{
    int block = -1;
    QByteArray answer;
    QByteArray validation = "1\r";
};

// A unit as far as these tests need one. Frames are answered at once. `look` sees each frame first.
void BeUnit(
    const Mishap& mishap = {}, const std::function<void(const QByteArray&)>& look = [](auto) {})
{
    scripted::WhenSent([mishap, look, blocks = 0](const QByteArray& frame) mutable {
        look(frame);
        if (frame == "*IDN?\r") {
            scripted::Deliver("ZELMA&KOVINTH,VX440,4400.1290.02/000129,3.2\r");
        } else if (frame == "CF0\r") {
            scripted::DeliverAfter(1000, QByteArray(75, '\0'));
        } else if (frame.startsWith("CF3\r")) {
            scripted::Deliver(blocks++ == mishap.block ? mishap.answer : "1\r");
        } else if (frame == "CF8\r") {
            scripted::Deliver(mishap.validation);
        }
    });
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
        Restart();
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
        QCOMPARE(Find<QLineEdit>("txtFirmwareFile")->accessibleName(), "Firmware File");
        QCOMPARE(Find<QToolButton>("btnSelectFirmware")->accessibleName(), "Select Firmware File");
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

    void thePageServesAllButOldUnitsThatAreFlagged()
    {
        const struct
        {
            const char* firmware;
            bool flagged;
            bool served;
        } units[] = {{"3.0", false, true}, {"3.0", true, true}, {"2.99", false, true},
            {"2.99", true, false}};
        BeginWith("x");
        for (const auto& unit : units) {
            TheDeviceDatabase()->SetFirmwareVersion(unit.firmware);
            SetUnsupportedFlag(*TheDeviceDatabase(), unit.flagged);
            Tab().ConnectionStatusChanged();
            QCOMPARE(Tab().isEnabled(), unit.served);
            QCOMPARE(LoadButton()->isEnabled(), unit.served);
            QCOMPARE(Find<QLabel>("lblCompatibility")->isVisible(), !unit.served);
        }
        SetUnsupportedFlag(*TheDeviceDatabase(), false);
        Tab().ConnectionStatusChanged();
        QVERIFY(LoadButton()->isEnabled());
        QVERIFY(!Find<QLabel>("lblCompatibility")->isVisible());
    }

    // The pages behind it still read from the unit then, which takes its time.
    void aServedPageKnowsTheLinkBeforeTheOtherPagesAreLoaded()
    {
        Choose(MakeImage("x"));
        TheDeviceCommunication()->StartConnection("127.0.0.1");
        AwaitConnectingThread();
        QVERIFY(!LoadButton()->isEnabled());
        Tab().ConnectionStatusChanged();
        QVERIFY(LoadButton()->isEnabled());
    }

    // The unit is not to install what it does not have.
    void eitherFlagAloneForbidsTheUpdate()
    {
        BeginSent();
        CTabLoadFirmware fresh(nullptr);
        VerifyThatEitherFlagForbidsTheUpdate(fresh);
        Click(UpdateButton());
        QVERIFY(TheDeviceCommunication()->IsConnected());
        VerifyThatEitherFlagForbidsTheUpdate(Tab());
    }

    void everyByteAndWaitOfATransfer()
    {
        // The size of an image, and its blocks.
        const QMap<int, int> images{
            {0, 1}, {1, 1}, {1135, 1}, {1136, 1}, {1137, 2}, {1200, 2}, {2336, 2}, {12000, 11}};
        for (auto entry = images.cbegin(); entry != images.cend(); ++entry) {
            const QByteArray image = Image(entry.key());
            BeginWith(image);
            const Notified notified;
            Click(LoadButton());
            QCOMPARE(Frames(), FramesOf(image));
            QCOMPARE(Frames().size(), entry.value() + 1);
            // The input is drained before each frame; each block's answer is there at the first
            // look.
            QList<int> sleeps;
            for (int block = 0; block < entry.value(); ++block) {
                sleeps << 10 << 1;
            }
            QCOMPARE(scripted::Sleeps(), sleeps << 10);
            QCOMPARE(notified.statuses, (QStringList{Sending, Sent}));
            QCOMPARE(StatusLine(), Sent);
            QVERIFY(UpdateButton()->isEnabled());
            QVERIFY(LoadButton()->isEnabled());
            QVERIFY(VisibleProgress() == nullptr);
        }
    }

    void theDialogTellsTheBytesHeadIncluded()
    {
        BeginWith(Image(1200));
        QString label;
        QString name;
        QPair<int, int> range;
        bool blocked = false;
        WhenShown<QProgressDialog>([&](QProgressDialog& dialog) {
            label = dialog.labelText();
            name = dialog.findChild<QProgressBar*>()->accessibleName();
            range = {dialog.minimum(), dialog.maximum()};
            CloseByTitleBar(MainWindow());
            blocked = MainWindow()->isVisible();
        });
        Click(LoadButton());
        QCOMPARE(label, "Sending 1264 bytes...");
        QCOMPARE(name, "Do Firmware Update...");
        QCOMPARE(range, qMakePair(0, 1264));
        QVERIFY(blocked);
        QCOMPARE(StatusLine(), Sent);
    }

    void theDialogMovesWithEachByteUpToTheEnd()
    {
        BeginWith(Image(2000));
        QVector<int> values;
        BeUnit({}, [&](const QByteArray& frame) {
            if (frame.startsWith("CF3\r")) {
                values.append(VisibleProgress() != nullptr ? VisibleProgress()->value() : -1);
            }
        });
        Click(LoadButton());
        // The last byte of the first block, and the end of the stream.
        QCOMPARE(values, (QVector<int>{1199, 2064}));
    }

    void theWindowIsPaintedBeforeTheDialogComesAndWhenItHasGone()
    {
        BeginWith(Image(100));
        QObject context;
        QStringList turns;
        const auto look = [&] {
            turns.append(VisibleProgress() != nullptr ? "a dialog" : StatusLine());
        };
        WhenStatusIs(context, Sending, [&] { InTheNextTurn(context, look); });
        BeUnit({}, [&](const QByteArray& frame) {
            if (frame.startsWith("CF4\r")) {
                InTheNextTurn(context, look);
            }
        });
        Click(LoadButton());
        QCOMPARE(turns, (QStringList{Sending, Sending}));
        QCOMPARE(StatusLine(), Sent);
    }

    void aTransferCanBeRepeated()
    {
        const QByteArray image = Image(1500);
        BeginWith(image);
        Click(LoadButton());
        Click(LoadButton());
        QCOMPARE(Frames(), FramesOf(image) + FramesOf(image));
    }

    void aTransferThatGoesWrongSendsNothingMore()
    {
        const QMap<QByteArray, QString> textOfAnswer{{"0\r", TransmissionError}, {"", UnknownError},
            {"?!", UnknownError}, {"2\r", UnknownError}};
        const QByteArray image = Image(5000);
        for (const int block : {0, 2, 4}) {
            for (const QByteArray& answer : textOfAnswer.keys()) {
                BeginWith(image);
                Click(LoadButton()); // a good one before, whose flags are to go
                QVERIFY(UpdateButton()->isEnabled());
                BeUnit({block, answer});
                scripted::ForgetEvents();
                Click(LoadButton());
                QCOMPARE(Frames(), FramesOf(image, block + 1));
                QCOMPARE(StatusLine(), textOfAnswer.value(answer));
                QVERIFY(!UpdateButton()->isEnabled());
                QVERIFY(LoadButton()->isEnabled());
                QVERIFY(VisibleProgress() == nullptr);
            }
        }
    }

    void aBrokenLinkEndsTheTransfer()
    {
        const QByteArray image = Image(5000);
        for (const int block : {0, 2, 4}) {
            BeginWith(image);
            scripted::FailSendsFrom(block + 1);
            Click(LoadButton());
            QCOMPARE(Frames(), FramesOf(image, block) + QStringList{"send fails"});
            QCOMPARE(StatusLine(), TransmissionError);
            QCOMPARE(ConnectionLine(), "Not Connected ");
            QVERIFY(!UpdateButton()->isEnabled());
            QVERIFY(!LoadButton()->isEnabled());
        }
    }

    void aLinkThatIsClosedAsTheTransferBeginsSendsNothing()
    {
        BeginSent();
        QObject context;
        WhenStatusIs(context, Sending, [] { TheDeviceCommunication()->Disconnect(); });
        scripted::ForgetEvents();
        const ShownProgress dialogs;
        Click(LoadButton());
        QCOMPARE(Frames(), QStringList());
        QCOMPARE(StatusLine(), QString());
        QCOMPARE(dialogs.Count(), 0);
        QVERIFY(!LoadButton()->isEnabled());
        QVERIFY(!UpdateButton()->isEnabled());
    }

    // No answer of a unit gives this result yet.
    void theResult65535EndsTheTransferWithoutAText()
    {
        BeginWith(Image(2000));
        scripted::FailSendsFrom(1);
        QObject context;
        connect(TheDeviceCommunication(), &CDeviceCommunication::ConnectionLost, &context,
            [] { TheDeviceCommunication()->*MemberOf(LastResult()) = 65535; });
        Click(LoadButton());
        QCOMPARE(Frames(), QStringList{"send fails"});
        QCOMPARE(StatusLine(), QString());
        QVERIFY(!UpdateButton()->isEnabled());
    }

    // The blocks are counted in 16 bits. Only the checksum goes out then, if the unit's last answer
    // was a good one.
    void anImageOf65536BlocksHasNone()
    {
        constexpr int size = 65536 * 1200;
        const QString checksum =
            FrameOf("CF4\r" + BigEndian(quint32(0)) + BigEndian(quint32(size)));
        for (const bool good : {true, false}) {
            BeginWith(Image(100));
            BeUnit({0, good ? "1\r" : "0\r"});
            Click(LoadButton());
            QVERIFY(QFile::resize(folder.filePath("image.cyacd"), size - 64));
            scripted::ForgetEvents();
            Click(LoadButton());
            QCOMPARE(Frames(), good ? QStringList{checksum} : QStringList());
            QCOMPARE(StatusLine(), good ? Sent : QString());
            QCOMPARE(UpdateButton()->isEnabled(), good);
        }
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

    void closingTheDialogSendsNothingMore()
    {
        // The value at which it is closed, and the blocks that are sent by then: within a block, at
        // the end of one, at the start of one, at the last byte and at the zeros behind it.
        const QMap<int, int> closings{
            {1, 0}, {1199, 0}, {1200, 1}, {3000, 2}, {5063, 4}, {5064, 4}};
        const QByteArray image = Image(5000);
        for (auto closing = closings.cbegin(); closing != closings.cend(); ++closing) {
            BeginWith(image);
            Click(LoadButton());
            scripted::ForgetEvents();
            CloseProgressAt(closing.key());
            Click(LoadButton());
            QCOMPARE(Frames(), FramesOf(image, closing.value()));
            QCOMPARE(StatusLine(), Cancelled);
            QVERIFY(!UpdateButton()->isEnabled());
            QVERIFY(VisibleProgress() == nullptr);
        }
    }

    void aFileThatIsGoneSendsNothing()
    {
        BeginSent(); // its last acknowledgement was a good one
        QVERIFY(QFile::remove(folder.filePath("image.cyacd")));
        const ShownProgress dialogs;
        Click(LoadButton());
        QCOMPARE(Frames(), QStringList());
        QCOMPARE(StatusLine(), QString());
        QCOMPARE(dialogs.Count(), 1);
        QVERIFY(VisibleProgress() == nullptr);
        QVERIFY(!UpdateButton()->isEnabled());
    }

    // A pipe would be waited for without end.
    void aFileThatCannotBeOpenedSendsNothingAndIsNamed()
    {
        const QString path = folder.filePath("image.cyacd");
        const auto makeFolder = [&] { return QDir().mkdir(path); };
        const auto makePipe = [&] { return QProcess::execute("mkfifo", {path}) == 0; };
        for (const auto& make :
            {std::function<bool()>(makeFolder), std::function<bool()>(makePipe)}) {
            BeginWith(Image(100));
            Click(LoadButton());
            scripted::ForgetEvents();
            QVERIFY(QFile::remove(path));
            if (!make()) {
                QSKIP("this system has no pipes with a name");
            }
            Click(LoadButton());
            QVERIFY(QDir().rmdir(path) || QFile::remove(path));
            QCOMPARE(Frames(), QStringList());
            QCOMPARE(StatusLine(), path + " File could not be found or open");
            QVERIFY(!UpdateButton()->isEnabled());
        }
    }

    // What came is not sent: it would be half an image.
    void aFileThatCannotBeReadWholeSendsNothingAndIsNamed()
    {
        if (!QFile::exists(FileShorterThanItsSize())) {
            QSKIP("this system has no file that is shorter than its size");
        }
        const QString path = folder.filePath("image.cyacd");
        BeginWith(Image(100));
        Click(LoadButton());
        scripted::ForgetEvents();
        QVERIFY(QFile::remove(path));
        QVERIFY(QFile::link(FileShorterThanItsSize(), path));
        const ShownProgress dialogs;
        Click(LoadButton());
        QVERIFY(QFile::remove(path));
        QCOMPARE(Frames(), QStringList());
        QCOMPARE(dialogs.Labels(), QStringList{"Sending 64 bytes..."});
        QCOMPARE(StatusLine(), path + " File could not be found or open");
        QVERIFY(!UpdateButton()->isEnabled());
    }

    void withoutAConnectionNothingIsSent()
    {
        BeginSent();
        TheDeviceCommunication()->Disconnect(); // which tells no one
        scripted::ForgetEvents();
        Click(LoadButton());
        QCOMPARE(Frames(), QStringList());
        QCOMPARE(StatusLine(), "Not connected to any device.");
        QVERIFY(UpdateButton()->isEnabled()); // the flags are as they were
    }

    void aSentImageCanBeInstalledAfterANewConnection()
    {
        BeginSent();
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
        BeginSent();
        const Notified notified;
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

        QCOMPARE(notified.statuses.first(), "Updating firmware ..");
        QVERIFY(notified.statuses.contains("Validating Firmware Update .. "));
        QCOMPARE(StatusLine(), Updated);
        QCOMPARE(ConnectionLine(), "Connected to 127.0.0.1");
        QVERIFY(!UpdateButton()->isEnabled());
    }

    void theWindowIsPaintedAsAnUpdateBeginsAsItIsValidatedAndAsItEnds()
    {
        BeginSent();
        QObject context;
        QStringList turns;
        bool begun = false;
        bool ended = false;
        BeUnit({}, [&](const QByteArray&) { begun = true; });
        connect(UpdateButton(), &QPushButton::clicked, &context, [&] { ended = true; });
        WhenStatusIs(context, "Updating firmware ..",
            [&] { InTheNextTurn(context, [&] { turns.append(begun ? "late" : "beginning"); }); });
        WhenStatusIs(context, Updated, [&] {
            InTheNextTurn(context,
                [&] { turns.append(VisibleProgress() == nullptr ? "late" : "validated"); });
        });
        connect(&Tab(), &CTabLoadFirmware::ReconnectAfterFirmwareUpDate, &context,
            [&] { InTheNextTurn(context, [&] { turns.append(ended ? "late" : "end"); }); });
        Click(UpdateButton());
        QCOMPARE(turns, (QStringList{"beginning", "validated", "end"}));
    }

    // The buttons are as they were when the link went down, until the tab has something to do.
    void afterAnUpdateTheNextTransferBeginsWithAFile()
    {
        BeginSent();
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
        BeginSent();
        const ShownProgress dialogs;
        QStringList labels;
        QVector<int> values;
        QVector<int> flags;
        QPair<int, int> range(-1, -1);
        bool openAtValidation = false;
        scripted::WhenSlept([&](int) {
            AwaitConnectingThread();
            if (values.size() < 300 && VisibleProgress() != nullptr) {
                values.append(VisibleProgress()->value());
                labels.append(VisibleProgress()->labelText());
                flags.append(int(VisibleProgress()->windowFlags()));
                if (range.first == -1) {
                    range = {VisibleProgress()->minimum(), VisibleProgress()->maximum()};
                }
            }
        });
        BeUnit({}, [&](const QByteArray& frame) {
            openAtValidation |= frame == "CF8\r" && VisibleProgress() != nullptr;
        });
        Click(UpdateButton());
        // It comes up at its second value.
        for (int pass = 1; pass < 300; ++pass) {
            QCOMPARE(values.value(pass - 1), pass);
            QCOMPARE(labels.value(pass - 1), "Firmware Update in progress... ");
            QCOMPARE(flags.value(pass - 1), 0x02001001);
        }
        QCOMPARE(range, qMakePair(0, 0));
        QVERIFY(openAtValidation);
        QVERIFY(dialogs.ClosedLabels().contains("Firmware Update in progress... "));
        QVERIFY(VisibleProgress() == nullptr);
        QVERIFY(MainWindow()->findChild<QProgressDialog*>() == nullptr);
    }

    void aRefusedOrSilentValidationStillReadsAsSuccess()
    {
        const QMap<QByteArray, int> resultOfAnswer{{"0\r", 0}, {"", 2}};
        for (const QByteArray& answer : resultOfAnswer.keys()) {
            BeginSent();
            BeUnit({-1, {}, answer});
            Click(UpdateButton());
            QCOMPARE(StatusLine(), Updated);
            QCOMPARE(int(TheDeviceCommunication()->GetLastResult()), resultOfAnswer.value(answer));
        }
    }

    void aUnitThatDoesNotComeBackFailsTheUpdate()
    {
        BeginSent();
        scripted::SetConnectResult(scripted::ConnectResult::Fails);
        Click(UpdateButton());
        QCOMPARE(scripted::Events().count("open 1"), 4);
        ExpectFailedUpdate();
    }

    // The user gives up waiting for it.
    void anAttemptThatIsClosedFailsTheUpdate()
    {
        BeginSent();
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        WhenShown<QProgressDialog>([](QProgressDialog& attempt) { CloseByTitleBar(&attempt); },
            [](const QProgressDialog& any) { return any.labelText().startsWith("Connecting"); });
        scripted::WhenSlept([](int) { QCoreApplication::processEvents(); });
        Click(UpdateButton());
        QCOMPARE(scripted::Events().count("open 1"), 1);
        ExpectFailedUpdate();
    }

    void aValidationThatCannotBeSentFailsTheUpdate()
    {
        BeginSent();
        scripted::FailSendsFrom(3); // behind the start of the update and the identity
        Click(UpdateButton());
        ExpectFailedUpdate();
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

    static void Restart()
    {
        TheDeviceCommunication()->Disconnect();
        scripted::Reset();
        scripted::WhenSlept([](int) { AwaitConnectingThread(); });
        BeUnit();
    }

    void BeginWith(const QByteArray& image)
    {
        Restart();
        ConnectTo("127.0.0.1");
        Choose(MakeImage(image));
        scripted::ForgetEvents();
    }

    // With an image that has been sent.
    void BeginSent()
    {
        BeginWith(Image(100));
        Click(LoadButton());
        scripted::ForgetEvents();
    }

    // While connected, of a page to which no image has been sent since the last update.
    static void VerifyThatEitherFlagForbidsTheUpdate(CTabLoadFirmware& tab)
    {
        const auto* const button = tab.findChild<QPushButton*>("btnUpdateFirmware");
        bool& sent = tab.*MemberOf(FirmwareSent());
        bool& pending = tab.*MemberOf(UpdatePendingValidation());
        const bool sentBefore = sent;
        sent = true;
        tab.UpdateControls();
        QVERIFY(!button->isEnabled());
        sent = sentBefore;
        pending = false;
        tab.UpdateControls();
        QVERIFY(!button->isEnabled());
        sent = true;
        tab.UpdateControls();
        QVERIFY(button->isEnabled());
        sent = sentBefore;
        pending = true;
        tab.UpdateControls();
    }

    static void ExpectFailedUpdate()
    {
        QVERIFY(!Frames().contains(FrameOf("CF8\r")));
        QCOMPARE(StatusLine(), UpdateFailed);
        QCOMPARE(ConnectionLine(), "Not Connected ");
        QVERIFY(VisibleProgress() == nullptr);
        QVERIFY(!LoadButton()->isEnabled());
        QVERIFY(!UpdateButton()->isEnabled());
    }

    QTemporaryDir folder;
};

VX440_WINDOW_TEST_MAIN(TabLoadFirmwareTest)
#include "TabLoadFirmwareTest.moc"
