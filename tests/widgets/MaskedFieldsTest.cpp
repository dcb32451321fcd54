// SPDX-License-Identifier: MIT

#include "tests/support/Warnings.h"
#include "tests/support/WindowTest.h"

#include <QAction>
#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QtTest>

#include <functional>

namespace {

// The address fields, each with the page that shows it.
const QPair<const char*, const char*> Fields[] = {{"Info", "txtIpAddress"},
    {"IP Configuration", "txtNewIpAddress"}, {"IP Configuration", "txtNewSubnetMask"},
    {"Detect Z&K Device", "txtStartIpAddress"}, {"Detect Z&K Device", "txtEndIpAddress"}};

// A field with an address in it, and the caret behind its last digit.
QLineEdit* FieldOn(const char* page, const char* name)
{
    ShowPage(page);
    auto* const field = Find<QLineEdit>(name);
    field->setText("192.168.0.20");
    Find<QWidget>("btnConnect")->setFocus();
    return field;
}

QImage PictureWithCaretAtStart(QLineEdit* field)
{
    Press(Qt::Key_Home);
    return field->grab().toImage();
}

// How fast the caret blinks, in milliseconds for on and off together. 0 keeps it on. Lasts as long
// as the object.
class FlashTime
{
    Q_DISABLE_COPY(FlashTime)

public:
    explicit FlashTime(int milliseconds) { QApplication::setCursorFlashTime(milliseconds); }
    ~FlashTime() { QApplication::setCursorFlashTime(before); }

private:
    const int before = QApplication::cursorFlashTime();
};

void VerifyClicks(QLineEdit* field)
{
    field->clear();
    field->setCursorPosition(9);
    Click(field);
    QVERIFY2(field->cursorPosition() == 0, qPrintable(field->objectName()));
    field->setText("1");
    field->setCursorPosition(0);
    Click(field);
    QVERIFY2(field->cursorPosition() > 0, qPrintable(field->objectName()));
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

    void theTabKeySelectsAllSoThatTypingReplacesIt()
    {
        for (const auto& [page, name] : Fields) {
            for (const auto reason :
                {Qt::TabFocusReason, Qt::BacktabFocusReason, Qt::ShortcutFocusReason}) {
                QLineEdit* const field = FieldOn(page, name);
                field->setFocus(reason);
                Type("192.168.0.5");
                QVERIFY2(field->text() == "192.168.0.5", name);
            }
        }
    }

    void theTabKeyShowsTheCaretAsAClickDoes()
    {
        const FlashTime steady(0);
        for (const auto& [page, name] : Fields) {
            QLineEdit* const field = FieldOn(page, name);
            Click(field);
            const QImage clicked = PictureWithCaretAtStart(field);
            for (const auto reason :
                {Qt::TabFocusReason, Qt::BacktabFocusReason, Qt::ShortcutFocusReason}) {
                FieldOn(page, name)->setFocus(reason);
                QVERIFY2(PictureWithCaretAtStart(field) == clicked, name);
            }
            Find<QWidget>("btnConnect")->setFocus();
            QVERIFY2(field->grab().toImage() != clicked, name);
        }
    }

    void theTabKeyLetsTheCaretBlink()
    {
        const FlashTime fast(2);
        for (const auto& [page, name] : Fields) {
            QLineEdit* const field = FieldOn(page, name);
            field->setFocus(Qt::TabFocusReason);
            const QImage picture = PictureWithCaretAtStart(field);
            QTRY_VERIFY2(field->grab().toImage() != picture, name);
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

    void aClickOrComingBackToTheWindowSelectsNothing()
    {
        for (const auto& [page, name] : Fields) {
            QLineEdit* const field = FieldOn(page, name);
            Click(field);
            QVERIFY2(!field->hasSelectedText(), name);
            FieldOn(page, name)->setFocus(Qt::ActiveWindowFocusReason);
            QVERIFY2(!field->hasSelectedText(), name);
        }
    }

    void aClickIntoAnEmptyFieldPutsTheCursorAtItsStartOnly()
    {
        for (const auto& [page, name] : Fields) {
            VerifyClicks(FieldOn(page, name));
        }
        QLineEdit* const mac = FieldOn("IP Configuration", "txtNewMacAddress");
        mac->show();
        VerifyClicks(mac);
        mac->hide();
    }

    void aPastedAddressReplacesTheField()
    {
        const QString before = "192.168.0.20";
        const QPair<QString, QString> rows[] = {
            {"10.1.2.3", "10.1.2.3"},
            {" 10.1.2.3\n", "10.1.2.3"},
            {"10.1  .2  .3  ", "10.1.2.3"}, // as a field is copied
            {"10.1.2.1 5", before},
            {"255.255.255.255", "255.255.255.255"},
            {"010.001.002.003", "010.001.002.003"},
            {"192.168.0.1/24", before},
            {"192.168.0.1:50000", before},
            {"unit-1.example.org", before},
            {"192.168.0.1\n192.168.0.2", before},
            {"192.168.1", before},
            {"1.2.3.4.5", before},
            {"192.168.0.256", before},
            {"192.168.0.0001", before},
            {"192..0.1", before},
            {"192.168.0.x", before},
            {"", before},
            {"02:4C:7E:00:01:29", before},
        };
        for (const auto& [copied, result] : rows) {
            VerifyPaste(Find<QLineEdit>("txtIpAddress"), before, copied, result);
        }
    }

    void aPastedMacAddressReplacesItsField()
    {
        const QString before = "02:4C:7E:00:01:29";
        const QPair<QString, QString> rows[] = {
            {"02:4C:7E:0A:0B:0C", "02:4C:7E:0A:0B:0C"},
            {" 02:4c:7e:0a:0b:0c\n", "02:4c:7e:0a:0b:0c"},
            {"02:4C:7E:0A:0B", before},
            {"02:4C:7E:0A:0B:0C:0D", before},
            {"02:4C:7E:0A:0B:0", before},
            {"02:4C:7E:0A:0B:0CC", before},
            {"02:4C:7E:0A:0B:0G", before},
            {"02-4C-7E-0A-0B-0C", before},
            {"10.1.2.3", before},
        };
        QLineEdit* const mac = FieldOn("IP Configuration", "txtNewMacAddress");
        mac->show();
        for (const auto& [copied, result] : rows) {
            VerifyPaste(mac, before, copied, result);
        }
        mac->hide();
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
        QGuiApplication::clipboard()->setText("1.2.3.4", QClipboard::Selection);
        QTest::mouseClick(field, Qt::LeftButton);
        QCOMPARE(field->text(), "192.168.0.20");
        QTest::mouseClick(field, Qt::MiddleButton);
        QCOMPARE(field->text(), "1.2.3.4");
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
    // In each of the ways that there are on every display.
    static void VerifyPaste(
        QLineEdit* field, const QString& before, const QString& copied, const QString& result)
    {
        const std::function<void()> ways[] = {
            [] { Press(Qt::Key_V, Qt::ControlModifier); },
            [] { Press(Qt::Key_Insert, Qt::ShiftModifier); },
            [field] { ChooseFromMenu(field, "&Paste"); },
            [field, copied] { Drop(field, copied); },
        };
        QGuiApplication::clipboard()->setText(copied);
        for (const auto& paste : ways) {
            field->setText(before);
            Click(field);
            paste();
            QCOMPARE(field->text(), result);
        }
    }

    static void Drop(QLineEdit* field, const QString& text)
    {
        QMimeData data;
        data.setText(text);
        QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(field, &enter);
        QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(field, &drop);
    }

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
        QVERIFY(field->findChildren<QMenu*>().isEmpty());
    }
};

VX440_WINDOW_TEST_MAIN(MaskedFieldsTest)
#include "MaskedFieldsTest.moc"
