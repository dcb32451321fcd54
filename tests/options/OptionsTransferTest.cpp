#include "link/CDeviceCommunication.h"
#include "options/CTabOptions.h"
#include "tests/options/OptionsPage.h"
#include "tests/support/SimulatorProcess.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QGroupBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QtTest>

namespace {

constexpr const char* DescriptionsNotSent = "Failed to send option descriptions to device!";

QString Hex(const QString& text)
{
    return QString(text.toLatin1().toHex().toUpper().constData());
}

QString Sent(const char* mnemonic, const QString& text)
{
    return text.isEmpty() ? QString(mnemonic) : QString(mnemonic) + QLatin1Char(' ') + Hex(text);
}

// What the progress dialog of a flow says and shows, from the moment that it comes up.
class ProgressWatch : public QObject
{
public:
    explicit ProgressWatch(const std::function<void()>& flow)
    {
        qApp->installEventFilter(this);
        flow();
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        const auto* const dialog = qobject_cast<QProgressDialog*>(watched);
        if (dialog != nullptr && event->type() == QEvent::Show) {
            label = dialog->labelText();
            status = StatusLine();
            minimum = dialog->minimum();
            maximum = dialog->maximum();
            values.append(dialog->value());
            connect(dialog->findChild<QProgressBar*>(), &QProgressBar::valueChanged, this,
                [this](int value) { values.append(value); });
        }
        return false;
    }

    QString label;
    QString status;
    int minimum = -1;
    int maximum = -1;
    QVector<int> values;
};

} // namespace

/// What travels between the page and a unit, with the faults that a unit can have.
class OptionsTransferTest : public WarningsFail
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        TheDeviceCommunication()->Disconnect();
        WarningsFail::cleanup();
    }

    void theReadingShowsHowFarItIs()
    {
        const SimulatorProcess unit(FullUnit());
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        const ProgressWatch progress([&] { page.ReadOptionsFromDeviceButtonClicked(); });
        QCOMPARE(progress.label, "Reading options from device ... ");
        QCOMPARE(progress.status, "Reading options from device ...");
        QCOMPARE(progress.minimum, 0);
        QCOMPARE(progress.maximum, 100);
        QCOMPARE(progress.values, (QVector<int>{10, 20, 40, 100}));
        QVERIFY(VisibleProgress() == nullptr);
    }

    void withoutALinkNothingIsRead()
    {
        CTabOptions page(nullptr);
        const ProgressWatch progress([&] { page.ReadOptionsFromDeviceButtonClicked(); });
        QCOMPARE(StatusLine(), QString(ReadFailed));
        QCOMPARE(progress.values, (QVector<int>{10, 100}));
        QVERIFY(Box(page, 0)->layout() == nullptr);
        QVERIFY(!Button(page, "btnReadOptionsFromDevice")->isEnabled());
        QVERIFY(!Button(page, "btnSendDeviceOptions")->isEnabled());
    }

    // A page that has read before holds the full record and shows it.
    void aBadAnswerIsJudged_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<bool>("readBefore");
        QTest::addColumn<bool>("success");
        QTest::addColumn<bool>("shown");
        QTest::addColumn<bool>("valid");
        const auto row = [](const char* name, const char* fault, bool before, bool success,
                             bool shown, bool valid) {
            QTest::newRow(name) << QString(fault) << before << success << shown << valid;
        };
        const bool no = false;
        const bool yes = true;
        row("silent at first", "silent:GET:OPTION:INTERNAL?", no, no, no, no);
        row("18 fields at first", "wrong:GET:OPTION:INTERNAL?", no, no, no, no);
        row("half the fields at first", "short:GET:OPTION:INTERNAL?", no, no, no, no);
        row("37 fields at first", "long:GET:OPTION:INTERNAL?", no, no, no, no);
        row("garbage at first", "garbage:GET:OPTION:INTERNAL?", no, no, no, no);
        row("no descriptions at first", "silent:GET:OPTION:DESC?", no, yes, yes, yes);
        row("18 descriptions at first", "wrong:GET:OPTION:DESC?", no, yes, yes, yes);
        row("a late answer", "slow:GET:OPTION:INTERNAL?", no, yes, yes, yes);
        row("late descriptions", "slow:GET:OPTION:DESC?", no, yes, yes, yes);
        row("byte by byte", "bytewise", no, yes, yes, yes);
        row("silent later: old data", "silent:GET:OPTION:INTERNAL?", yes, yes, yes, yes);
        row("18 fields later: old data", "wrong:GET:OPTION:INTERNAL?", yes, yes, yes, yes);
        row("18 descriptions later: old data", "wrong:GET:OPTION:DESC?", yes, yes, yes, yes);
        row("37 fields later", "long:GET:OPTION:INTERNAL?", yes, no, yes, no);
    }
    void aBadAnswerIsJudged()
    {
        QFETCH(QString, fault);
        QFETCH(bool, readBefore);
        QFETCH(bool, success);
        QFETCH(bool, shown);
        QFETCH(bool, valid);
        SimulatorProcess unit(FullUnit());
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        if (readBefore) {
            page.ReadOptionsFromDeviceButtonClicked();
        }
        QVERIFY(unit.Tell(QString("fault ") + fault));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), QString(success ? ReadDone : ReadFailed));
        QCOMPARE(Shown(page), shown ? FullGroups() : QVector<QStringList>(Groups));
        QVERIFY(Button(page, "btnReadOptionsFromDevice")->isEnabled());
        QCOMPARE(Button(page, "btnSendDeviceOptions")->isEnabled(), valid);
        QVERIFY(TheDeviceCommunication()->IsConnected());
    }

    // It is taken for the descriptions, which follow it.
    void anAnswerThatComesTooLateIsForgottenByTheNextRead()
    {
        const SimulatorProcess unit(FullUnit() << "--slow-ms"
                                               << "3500"
                                               << "--fault"
                                               << "slow:GET:OPTION:INTERNAL?:1");
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), QString(ReadFailed));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), QString(ReadDone));
        QCOMPARE(Shown(page), FullGroups());
        QCOMPARE(Lines(page, 0).first()->toolTip(), "12 V");
    }

    void aStringOfTheWrongLengthIsRefused_data()
    {
        QTest::addColumn<QString>("options");
        QTest::addColumn<QString>("descriptions");
        QTest::addColumn<bool>("success");
        const QString empty = QString(NoOptions);
        QTest::newRow("18 options") << empty.mid(2) << QString(NoDescriptions) << false;
        QTest::newRow("20 options") << empty + ",0" << QString(NoDescriptions) << false;
        QTest::newRow("no options") << QString() << QString(NoDescriptions) << false;
        QTest::newRow("an empty option")
            << QString(",") + empty.mid(2) << QString(NoDescriptions) << false;
        QTest::newRow("643 characters")
            << empty << QString(643, 'x') + QString(NoDescriptions) << true;
        QTest::newRow("644 characters")
            << empty << QString(644, 'x') + QString(NoDescriptions) << false;
        QTest::newRow("longer than is read")
            << QString(1970, 'x') + empty << QString(NoDescriptions) << false;
    }
    void aStringOfTheWrongLengthIsRefused()
    {
        QFETCH(QString, options);
        QFETCH(QString, descriptions);
        QFETCH(bool, success);
        const SimulatorProcess unit(UnitWith(options, descriptions));
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(StatusLine(), QString(success ? ReadDone : ReadFailed));
        QCOMPARE(Button(page, "btnSendDeviceOptions")->isEnabled(), success);
        QCOMPARE(Shown(page), success ? EmptyGroups() : QVector<QStringList>(Groups));
    }

    void lineFeedsAndZerosAreTakenOutOfTheAnswers()
    {
        const QString options = QString(NoOptions).replace(0, 1, "VX440\n-DCF\n");
        const SimulatorProcess unit(UnitWith(options, QString("a\nb\n") + QString(NoDescriptions)));
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(Shown(page, 0), Split("DC-Feed1"));
        QCOMPARE(Lines(page, 0).first()->toolTip(), "ab");
    }

    void sendingGivesTheUnitBothStrings()
    {
        SimulatorProcess unit(UnitWith(FullOptions, FullDescriptions));
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        unit.Forget();
        const ProgressWatch progress([&] { page.SendOptionsToDeviceButtonClicked(); });
        QCOMPARE(StatusLine(), QString(SendDone));
        QCOMPARE(unit.Commands(), (QStringList{Sent("CF9", QString(FullOptions)),
                                      Sent("CF10", QString(FullDescriptions))}));
        QCOMPARE(progress.label, "Sending options to device ... ");
        QCOMPARE(progress.status, "Sending options to device ...");
        QCOMPARE(progress.minimum, 0);
        QCOMPARE(progress.maximum, 100);
        QCOMPARE(progress.values, (QVector<int>{1, 20, 50, 100}));
        QVERIFY(VisibleProgress() == nullptr);
    }

    void whatOneUnitHasAnotherCanBeGiven()
    {
        SimulatorProcess first(FullUnit());
        SimulatorProcess second(UnitWith(NoOptions, NoDescriptions));
        CTabOptions page(nullptr);
        QVERIFY(Connect(first));
        page.ReadOptionsFromDeviceButtonClicked();
        QVERIFY(Connect(second));
        page.SendOptionsToDeviceButtonClicked();
        QCOMPARE(StatusLine(), QString(SendDone));
        QCOMPARE(second.State("options"), QString(FullOptions));
        QCOMPARE(second.State("option-descriptions"), QString(FullDescriptions));
        CTabOptions other(nullptr);
        other.ReadOptionsFromDeviceButtonClicked();
        QCOMPARE(Shown(other), FullGroups());
    }

    void withoutALinkNothingIsSent()
    {
        CTabOptions page(nullptr);
        const ProgressWatch progress([&] { page.SendOptionsToDeviceButtonClicked(); });
        QCOMPARE(StatusLine(), QString(OptionsNotSent));
        QCOMPARE(progress.values, (QVector<int>{1, 20, 100}));
    }

    void anEmptyRecordSendsEmptyStrings()
    {
        SimulatorProcess unit(FullUnit());
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.SendOptionsToDeviceButtonClicked(); // its button is disabled
        QCOMPARE(StatusLine(), QString(SendDone));
        QCOMPARE(unit.Commands(), (QStringList{"CF9", "CF10"}));
    }

    // Silence and a reset take the ten seconds that an acknowledgement is waited for.
    void aFaultAtEitherStepEndsInItsText_data()
    {
        QTest::addColumn<QString>("fault");
        QTest::addColumn<QString>("status");
        QTest::addColumn<bool>("optionsKept");
        QTest::addColumn<bool>("descriptionsSent");
        QTest::addColumn<bool>("descriptionsKept");
        const auto row = [](const char* fault, const char* status, bool optionsKept,
                             bool descriptionsSent, bool descriptionsKept) {
            QTest::newRow(fault) << QString(fault) << QString(status) << optionsKept
                                 << descriptionsSent << descriptionsKept;
        };
        row("refusing:CF9", OptionsNotSent, false, false, false);
        row("silent:CF9", OptionsNotSent, true, false, false);
        row("resetting:CF9", OptionsNotSent, true, false, false);
        row("long:CF9", OptionsNotSent, true, false, false);
        row("garbage:CF9", OptionsNotSent, true, false, false);
        row("refusing:CF10", DescriptionsNotSent, true, true, false);
        row("silent:CF10", DescriptionsNotSent, true, true, true);
        row("resetting:CF10", DescriptionsNotSent, true, true, true);
        row("long:CF10", DescriptionsNotSent, true, true, true);
        row("slow:CF9", SendDone, true, true, true);
        row("slow:CF10", SendDone, true, true, true);
        row("short:CF10", SendDone, true, true, true); // the first byte tells
    }
    void aFaultAtEitherStepEndsInItsText()
    {
        QFETCH(QString, fault);
        QFETCH(bool, optionsKept);
        QFETCH(bool, descriptionsSent);
        QFETCH(bool, descriptionsKept);
        SimulatorProcess full(FullUnit());
        SimulatorProcess unit(UnitWith(NoOptions, NoDescriptions) << "--fault" << fault);
        CTabOptions page(nullptr);
        QVERIFY(Connect(full));
        page.ReadOptionsFromDeviceButtonClicked();
        QVERIFY(Connect(unit));
        page.SendOptionsToDeviceButtonClicked();
        QTEST(StatusLine(), "status");
        QStringList sent{Sent("CF9", QString(FullOptions))};
        if (descriptionsSent) {
            sent.append(Sent("CF10", QString(FullDescriptions)));
        }
        QCOMPARE(unit.Commands(), sent);
        QCOMPARE(unit.State("options"), QString(optionsKept ? FullOptions : NoOptions));
        QCOMPARE(unit.State("option-descriptions"),
            QString(descriptionsKept ? FullDescriptions : NoDescriptions));
    }

    // In a frame the text stands behind the mnemonic and a carriage return.
    void aFrameOf1200BytesIsNotSent_data()
    {
        QTest::addColumn<int>("optionsFrame");
        QTest::addColumn<int>("descriptionsFrame");
        QTest::addColumn<QString>("status");
        QTest::addColumn<int>("sent");
        QTest::newRow("options of 1199") << 1199 << 100 << QString(SendDone) << 2;
        QTest::newRow("options of 1200") << 1200 << 100 << QString(OptionsNotSent) << 0;
        QTest::newRow("descriptions of 1199") << 100 << 1199 << QString(SendDone) << 2;
        QTest::newRow("descriptions of 1200") << 100 << 1200 << QString(DescriptionsNotSent) << 1;
    }
    void aFrameOf1200BytesIsNotSent()
    {
        QFETCH(int, optionsFrame);
        QFETCH(int, descriptionsFrame);
        QFETCH(QString, status);
        QFETCH(int, sent);
        const QString options =
            QString(optionsFrame - 4, 'x').replace(1, 36, QString(NoOptions).mid(1));
        const QString descriptions =
            QString(NoDescriptions) + QString(descriptionsFrame - 5 - 18, 'y');
        SimulatorProcess unit(UnitWith(options, descriptions));
        CTabOptions page(nullptr);
        QVERIFY(Connect(unit));
        page.ReadOptionsFromDeviceButtonClicked();
        unit.Forget();
        page.SendOptionsToDeviceButtonClicked();
        QCOMPARE(StatusLine(), status);
        const QStringList both{Sent("CF9", options), Sent("CF10", descriptions)};
        QCOMPARE(unit.Commands(), both.mid(0, sent));
    }
};

VX440_WINDOW_TEST_MAIN(OptionsTransferTest)
#include "OptionsTransferTest.moc"
