#include "model/CDeviceDatabase.h"
#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QAction>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QWindow>
#include <QtTest>

namespace {

void AddFields()
{
    QTest::addColumn<QString>("page");
    QTest::addColumn<QString>("field");
    const auto row = [](const char* page, const char* field) {
        QTest::newRow(field) << QString::fromLatin1(page) << QString::fromLatin1(field);
    };
    row("Info", "txtIpAddress");
    row("IP Configuration", "txtNewIpAddress");
    row("IP Configuration", "txtNewSubnetMask");
    row("Detect Z&K Device", "txtStartIpAddress");
    row("Detect Z&K Device", "txtEndIpAddress");
}

// The field of this row, with an address in it and the caret behind its last digit.
QLineEdit* FieldOfRow()
{
    const QString page = *static_cast<QString*>(QTest::qData("page", qMetaTypeId<QString>()));
    const QString name = *static_cast<QString*>(QTest::qData("field", qMetaTypeId<QString>()));
    ShowPage(page.toLatin1().constData());
    auto* const field = Find<QLineEdit>(name.toLatin1().constData());
    field->setText("192.168.0.20");
    Find<QWidget>("btnConnect")->setFocus();
    return field;
}

void Copy(const QString& text)
{
    QGuiApplication::clipboard()->setText(text);
}

} // namespace

/// The address fields of the window, under the hands of a user who types and pastes.
class MaskedFieldsTest : public WarningsFail
{
    Q_OBJECT

private slots:
    // Runs first.
    void atTheStartTypingReplacesTheAddress()
    {
        QVERIFY(QTest::qWaitForWindowActive(MainWindow()));
        QCOMPARE(MainWindow()->focusWidget()->objectName(), "txtIpAddress");
        Type("127.0.0.9");
        QCOMPARE(Find<QLineEdit>("txtIpAddress")->text(), "127.0.0.9");
    }

    void theTabKeySelectsAllSoThatTypingReplacesIt_data() { AddFields(); }
    void theTabKeySelectsAllSoThatTypingReplacesIt()
    {
        QLineEdit* const field = FieldOfRow();
        for (const auto reason :
            {Qt::TabFocusReason, Qt::BacktabFocusReason, Qt::ShortcutFocusReason}) {
            Find<QWidget>("btnConnect")->setFocus();
            field->setText("192.168.0.20");
            field->setFocus(reason);
            Type("192.168.0.5");
            QCOMPARE(field->text(), "192.168.0.5");
        }
    }

    void theTabKeyItselfComesToTheFirstField()
    {
        ShowPage("Detect Z&K Device");
        Click(Find<QLineEdit>("txtStartIpAddress"));
        Press(Qt::Key_Tab);
        Type("10.0.0.1");
        QCOMPARE(Find<QLineEdit>("txtEndIpAddress")->text(), "10.0.0.1");
    }

    void aClickSelectsNothing_data() { AddFields(); }
    void aClickSelectsNothing()
    {
        QLineEdit* const field = FieldOfRow();
        Click(field);
        QVERIFY(!field->hasSelectedText());
    }

    void comingBackToTheWindowSelectsNothing_data() { AddFields(); }
    void comingBackToTheWindowSelectsNothing()
    {
        QLineEdit* const field = FieldOfRow();
        field->setFocus(Qt::ActiveWindowFocusReason);
        QVERIFY(!field->hasSelectedText());
    }

    void aPastedAddressReplacesTheField_data()
    {
        QTest::addColumn<QString>("copied");
        QTest::addColumn<QString>("result");
        const QString before = "192.168.0.20";
        const auto row = [](const char* name, const char* copied, const QString& result) {
            QTest::newRow(name) << QString::fromLatin1(copied) << result;
        };
        row("an address", "10.1.2.3", "10.1.2.3");
        row("blanks around it", " 10.1.2.3\n", "10.1.2.3");
        row("as a field is copied", "10.1  .2  .3  ", "10.1.2.3");
        row("a blank inside a number", "10.1.2.1 5", before);
        row("the largest", "255.255.255.255", "255.255.255.255");
        row("zeros in front", "010.001.002.003", "010.001.002.003");
        row("a prefix length", "192.168.0.1/24", before);
        row("a port", "192.168.0.1:50000", before);
        row("a name", "unit-1.example.org", before);
        row("two lines", "192.168.0.1\n192.168.0.2", before);
        row("three numbers", "192.168.1", before);
        row("five numbers", "1.2.3.4.5", before);
        row("a number of 256", "192.168.0.256", before);
        row("four digits", "192.168.0.0001", before);
        row("an empty number", "192..0.1", before);
        row("a letter", "192.168.0.x", before);
        row("nothing", "", before);
        row("a MAC address", "02:4C:7E:00:01:29", before);
    }
    void aPastedAddressReplacesTheField()
    {
        QFETCH(QString, copied);
        QFETCH(QString, result);
        auto* const field = Find<QLineEdit>("txtIpAddress");
        Copy(copied);

        const auto begin = [field] {
            field->setText("192.168.0.20");
            Click(field);
        };
        begin();
        Press(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(field->text(), result);

        begin();
        Press(Qt::Key_Insert, Qt::ShiftModifier);
        QCOMPARE(field->text(), result);

        begin();
        ChooseFromMenu(field, "&Paste");
        QCOMPARE(field->text(), result);

        begin();
        QMimeData data;
        data.setText(copied);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(field, &enter);
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(field, &drop);
        QCOMPARE(field->text(), result);
    }

    void theMiddleButtonPastesAnAddressOnly()
    {
        if (!QGuiApplication::clipboard()->supportsSelection()) {
            QSKIP("this display has no selection");
        }
        auto* const field = Find<QLineEdit>("txtIpAddress");
        field->setText("192.168.0.20");
        QGuiApplication::clipboard()->setText("1.2.3.4/8", QClipboard::Selection);
        QTest::mouseClick(field, Qt::MiddleButton);
        QCOMPARE(field->text(), "192.168.0.20");
    }

    void copyingStaysInTheMenu()
    {
        auto* const field = Find<QLineEdit>("txtIpAddress");
        field->setText("192.168.0.20");
        field->selectAll();
        ChooseFromMenu(field, "&Copy");
        QCOMPARE(QGuiApplication::clipboard()->text().remove(' '), "192.168.0.20");
    }

private:
    static void ChooseFromMenu(QLineEdit* field, const char* action)
    {
        const QPoint middle = field->rect().center();
        QContextMenuEvent event(QContextMenuEvent::Keyboard, middle, field->mapToGlobal(middle));
        QCoreApplication::sendEvent(field, &event);
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu != nullptr);
        const QList<QAction*> actions = menu->actions();
        for (QAction* const any : actions) {
            if (any->text().startsWith(action)) {
                any->trigger();
            }
        }
        menu->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

VX440_WINDOW_TEST_MAIN(MaskedFieldsTest)
#include "MaskedFieldsTest.moc"
