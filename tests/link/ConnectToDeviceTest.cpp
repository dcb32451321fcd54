#include "link/ConnectToDevice.h"
#include "link/CDeviceCommunication.h"
#include "model/CDeviceDatabase.h"
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

// The texts that the connection's status line shows, one for each notification of its column.
class StatusTexts
{
public:
    StatusTexts()
    {
        connection = QObject::connect(
            TheDeviceDatabase(), &QAbstractItemModel::dataChanged, [this](const QModelIndex& cell) {
                if (cell.column() == 2) {
                    texts.append(cell.data().toString());
                }
            });
    }
    ~StatusTexts() { QObject::disconnect(connection); }
    Q_DISABLE_COPY(StatusTexts)

    QStringList texts;

private:
    QMetaObject::Connection connection;
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
        QVERIFY(ConnectToDevice(3, "127.0.0.1"));
        QVERIFY(TheDeviceCommunication()->IsConnected());
        QCOMPARE(status.texts, (QStringList{"Connecting to 127.0.0.1 ...",
                                   "Reconnecting to 127.0.0.1", "Connected to 127.0.0.1"}));
        QCOMPARE(ApplicationStatus(), QString());
        QCOMPARE(scripted::Sleeps(), QList<int>{100});
        QCOMPARE(Attempts(), 1);
    }

    void theDatabasesAddressDecidesAndNotTheArgument()
    {
        LetAttemptSucceed();
        QVERIFY(ConnectToDevice(3, "127.0.0.77"));
        QVERIFY(scripted::Events().contains("resolve 127.0.0.1"));
        QCOMPARE(TheDeviceDatabase()->GetIpAddress(), "127.0.0.1");
    }

    void aSilentAddressIsTriedFourTimesFor200PollsOf100Ms()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        QStringList labels;
        scripted::WhenSlept([&labels](int) {
            const QString label = AttemptDialog()->labelText();
            if (labels.isEmpty() || labels.last() != label) {
                labels.append(label);
            }
        });
        QVERIFY(ConnectToDevice(3, QString()));
        QCOMPARE(Attempts(), 4);
        QCOMPARE(scripted::Sleeps(), QVector<int>(800, 100).toList());
        QCOMPARE(
            labels, (QStringList{"Connecting to VX440 (Attempt 1) ...",
                        "Connecting to VX440 (Attemp 2) ...", "Connecting to VX440 (Attemp 3) ...",
                        "Connecting to VX440 (Attemp 4) ..."}));
        QCOMPARE(ApplicationStatus(), "Connection failed! ");
        QCOMPARE(ConnectionStatus(), "Not Connected ");
    }

    void theLastLabelSpeaksOfAFifthAttempt()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        QStringList labels;
        const auto connection = connect(TheDeviceDatabase(), &QAbstractItemModel::dataChanged, this,
            [&labels](const QModelIndex& cell) {
                if (cell.column() == 2 && AttemptDialog() != nullptr) {
                    labels.append(AttemptDialog()->labelText());
                }
            });
        ConnectToDevice(3, QString());
        disconnect(connection);
        QVERIFY(labels.contains("Connecting to VX440 (Attemp 5) ..."));
    }

    void retriesOf0MakeOneAttempt()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Hangs);
        QVERIFY(ConnectToDevice(0, QString()));
        QCOMPARE(Attempts(), 1);
        QCOMPARE(scripted::Sleeps().size(), 200);
    }

    void aRefusedAttemptIsWaitedForLikeASilentOne()
    {
        scripted::SetConnectResult(scripted::ConnectResult::Fails);
        QVERIFY(ConnectToDevice(0, QString()));
        TheDeviceCommunication()->wait();
        QCOMPARE(scripted::Sleeps().count(100), 200);
        QCOMPARE(ApplicationStatus(), "Connection failed! ");
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

    void anAddressThatDoesNotParseFailsWithoutAnAttempt_data()
    {
        QTest::addColumn<QString>("address");
        QTest::newRow("bare mask") << "...";
        QTest::newRow("empty part") << "192.168..1";
        QTest::newRow("octet of 256") << "192.168.0.256";
        QTest::newRow("empty") << QString();
    }
    void anAddressThatDoesNotParseFailsWithoutAnAttempt()
    {
        QFETCH(QString, address);
        TheDeviceDatabase()->SetIpAddress(address);
        const StatusTexts status;
        QVERIFY(!ConnectToDevice(3, address));
        QCOMPARE(Attempts(), 0);
        QCOMPARE(scripted::Sleeps(), QList<int>());
        QCOMPARE(ApplicationStatus(), "Connection failed! ");
        QCOMPARE(status.texts, (QStringList{"Connecting to  ...", "Not Connected "}));
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

    void noDialogIsLeftBehind()
    {
        LetAttemptSucceed();
        ConnectToDevice(3, QString());
        QVERIFY(AttemptDialog() == nullptr);
    }
};

QTEST_MAIN(ConnectToDeviceTest)
#include "ConnectToDeviceTest.moc"
