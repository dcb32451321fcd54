// SPDX-License-Identifier: MIT

#include "link/ConnectToDevice.h"
#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
#include "tests/support/Notified.h"
#include "tests/support/Warnings.h"
#include "tests/support/scripted/ScriptedLink.h"

#include <QApplication>
#include <QLabel>
#include <QProgressDialog>
#include <QtTest>

namespace {

QProgressDialog* AttemptDialog()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* const window : windows) {
        if (auto* const dialog = qobject_cast<QProgressDialog*>(window)) {
            return dialog;
        }
    }
    return nullptr;
}

// The texts that the connection's status line shows, one for each notification of its column, the
// labels of the dialog meanwhile, and whether it was on the screen.
class StatusTexts : public QObject
{
public:
    StatusTexts()
    {
        connect(TheDeviceDatabase(), &QAbstractItemModel::dataChanged, this,
            [this](const QModelIndex& cell) {
                if (cell.column() == 2) {
                    texts.append(cell.data().toString());
                    const QProgressDialog* const dialog = AttemptDialog();
                    labels.append(dialog != nullptr ? dialog->labelText() : "");
                    shown.append(dialog != nullptr && dialog->isVisible());
                }
            });
    }

    QStringList texts;
    QStringList labels;
    QList<bool> shown;
};

QString ApplicationStatus()
{
    return TheDeviceDatabase()->index(0, 1).data().toString();
}

QString ConnectionStatus()
{
    return TheDeviceDatabase()->ConnectionStatusText();
}

void SucceedNow(int)
{
    scripted::SetConnectResult(scripted::ConnectResult::Succeeds);
    TheDeviceCommunication()->wait();
}

// The connecting thread runs beside the scripted clock: it succeeds in the first wait.
void LetAttemptSucceed()
{
    scripted::SetConnectResult(scripted::ConnectResult::SucceedsWhenTold);
    scripted::WhenSlept(SucceedNow);
}

int Attempts()
{
    return scripted::Events().count("open 1");
}

} // namespace

class ConnectToDeviceTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void init()
    {
        WarningsFail::init();
        TheDeviceCommunication()->Disconnect();
        scripted::Reset();
        TheDeviceDatabase()->ResetData();
        TheDeviceDatabase()->SetIpAddress("127.0.0.1");
    }

    void aFirstAttemptThatSucceedsEndsConnectedAfterAPassageThroughReconnecting()
    {
        LetAttemptSucceed();
        const StatusTexts status;
        const Notified notified;
        QVERIFY(ConnectToDevice(3, "127.0.0.77")); // the database's address decides
        QVERIFY(scripted::Events().contains("resolve 127.0.0.1"));
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), "127.0.0.1");
        QVERIFY(TheDeviceCommunication()->IsConnected());
        QCOMPARE(status.texts, (QStringList{"Connecting to 127.0.0.1 ...",
                                   "Reconnecting to 127.0.0.1", "Connected to 127.0.0.1"}));
        QCOMPARE(status.shown, (QList<bool>{false, true, false}));
        QCOMPARE(notified.columns, (QVector<int>{3, 0, 2, 0, 2, 0, 2})); // the address anew, first
        QCOMPARE(ApplicationStatus(), QString());
        QCOMPARE(scripted::Sleeps(), QList<int>{100});
        QCOMPARE(Attempts(), 1);
        QVERIFY(AttemptDialog() == nullptr); // none is left behind
    }

    void whatWaitsIsDoneBehindTheFirstTextAndBeforeTheDialog()
    {
        LetAttemptSucceed();
        QString textThen;
        bool dialogThen = true;
        QMetaObject::invokeMethod(
            qApp,
            [&] {
                textThen = ConnectionStatus();
                dialogThen = AttemptDialog() != nullptr;
            },
            Qt::QueuedConnection);
        QVERIFY(ConnectToDevice(3, QString()));
        QCOMPARE(textThen, "Connecting to 127.0.0.1 ...");
        QVERIFY(!dialogThen);
    }

    void aSilentAddressIsTriedFourTimesFor200PollsOf100Ms()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        QStringList labels;
        scripted::WhenSlept([&labels](int) { labels.append(AttemptDialog()->labelText()); });
        const StatusTexts status;
        QVERIFY(ConnectToDevice(3, QString()));
        QCOMPARE(Attempts(), 4);
        QCOMPARE(scripted::Sleeps(), QVector<int>(800, 100).toList());
        labels.removeDuplicates();
        QCOMPARE(
            labels, (QStringList{"Connecting to VX440 (Attempt 1) ...",
                        "Connecting to VX440 (Attemp 2) ...", "Connecting to VX440 (Attemp 3) ...",
                        "Connecting to VX440 (Attemp 4) ..."}));
        QVERIFY(status.labels.contains("Connecting to VX440 (Attemp 5) ...")); // after the last
        QCOMPARE(ApplicationStatus(), "Connection failed! ");
        QCOMPARE(ConnectionStatus(), "Not Connected ");
    }

    void retriesOf0MakeOneAttemptWhichIsWaitedForWhenItIsRefusedToo()
    {
        for (const auto result : {scripted::ConnectResult::Hangs, scripted::ConnectResult::Fails}) {
            scripted::SetConnectResult(result);
            scripted::ForgetEvents();
            QVERIFY(ConnectToDevice(0, QString()));
            QCOMPARE(Attempts(), 1);
            QCOMPARE(scripted::Sleeps().count(100), 200);
            QCOMPARE(ApplicationStatus(), "Connection failed! ");
        }
        TheDeviceCommunication()->wait();
    }

    void aSecondAttemptThatSucceedsIsTheLast()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        scripted::WhenSlept([](int now) {
            if (now == 20000) {
                scripted::SetConnectResult(scripted::ConnectResult::SucceedsWhenTold);
            } else if (now > 20000) {
                SucceedNow(now);
            }
        });
        QVERIFY(ConnectToDevice(3, QString()));
        QVERIFY(TheDeviceCommunication()->IsConnected());
        QCOMPARE(Attempts(), 2);
        QCOMPARE(scripted::Now(), 20100);
        QCOMPARE(ConnectionStatus(), "Connected to 127.0.0.1");
    }

    void anAddressThatDoesNotParseFailsWithoutAnAttempt()
    {
        for (const QString address : {"...", "192.168..1", "192.168.0.256", ""}) {
            TheDeviceDatabase()->SetIpAddress(address);
            const Notified notified;
            const StatusTexts status;
            QVERIFY2(!ConnectToDevice(3, address), qPrintable(address));
            QCOMPARE(Attempts(), 0);
            QCOMPARE(scripted::Sleeps(), QList<int>());
            QCOMPARE(
                notified.statuses, (QStringList{"Invalid IP address.", "Connection failed! "}));
            QCOMPARE(status.texts, (QStringList{"Connecting to  ...", "Not Connected "}));
        }
    }

    void aDialogThatIsClosedEndsTheAttempt()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        scripted::WhenSlept([](int now) {
            if (now == 500) {
                AttemptDialog()->close();
            }
        });
        QVERIFY(ConnectToDevice(3, QString()));
        QCOMPARE(Attempts(), 1);
        QCOMPARE(scripted::Sleeps().size(), 5);
        QCOMPARE(ApplicationStatus(), "Connection failed! ");
    }

    void afterAClosedDialogALateSuccessRaisesTheFlagUnderTheTextOfFailure()
    {
        scripted::SetConnectResult(scripted::ConnectResult::SucceedsWhenTold);
        scripted::WhenSlept([](int now) {
            if (now == 300) {
                AttemptDialog()->close();
            }
        });
        QVERIFY(ConnectToDevice(3, QString()));
        QVERIFY(!TheDeviceCommunication()->IsConnected());
        scripted::SetConnectResult(scripted::ConnectResult::Succeeds);
        TheDeviceCommunication()->wait();
        QVERIFY(TheDeviceCommunication()->IsConnected());
        QCOMPARE(ConnectionStatus(), "Not Connected ");
        QCOMPARE(ApplicationStatus(), "Connection failed! ");
    }

    void theDialogIsBusyAndShowsTheRemainingPolls()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        QList<int> values;
        scripted::WhenSlept([&values](int now) {
            QCOMPARE(AttemptDialog()->minimum(), 0);
            QCOMPARE(AttemptDialog()->maximum(), 0);
            if (now <= 400) {
                values.append(AttemptDialog()->value());
            }
        });
        ConnectToDevice(0, QString());
        QCOMPARE(values.mid(1), (QList<int>{200, 199, 198}));
    }
};

QTEST_MAIN(ConnectToDeviceTest)
#include "ConnectToDeviceTest.moc"
