// SPDX-License-Identifier: MIT

#include "tests/soak/User.h"

#include "tests/support/WindowTest.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTimer>
#include <QWindow>
#include <QtTest>

#include <cstdio>

namespace {

const QString UnitAddress = "127.0.0.2";
const QString SilentAddress = "192.168.77.200";

constexpr int ReactionMs = 50;
/// A dialog is closed after so many reactions; an installation takes 600.
constexpr int LongPatience = 700;
constexpr int UsualPatience = 160;
constexpr int ShortPatience = 40;

constexpr Qt::Key Keys[] = {Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Space, Qt::Key_Return,
    Qt::Key_Enter, Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Home, Qt::Key_End,
    Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_A, Qt::Key_C,
    Qt::Key_V, Qt::Key_X, Qt::Key_Z, Qt::Key_1, Qt::Key_9, Qt::Key_Minus, Qt::Key_F2, Qt::Key_F4};

const QStringList& Texts()
{
    static const QStringList texts{QString(), "0", "7", "99", "65535", "65536", "-1", "x",
        "127.0.0.3", "127.0.0.255", "10.1.2.3", "192.168.77.10", "192.168.77.14", "255.255.255.0",
        "1.2", "02:4C:7E:00:01:30", "<b>bold</b>", QString(300, 'm')};
    return texts;
}

const QStringList& Commands()
{
    static const QStringList commands{QString(), ":*IDN?", ":GET:OPTION:INTERNAL?",
        ":GET:OPTION:DESC?", ":CF0", ":CF1", ":CF2", ":CF3", ":CF3:2", ":CF4", ":CF5", ":CF6",
        ":CF7", ":CF7:2", ":CF8", ":CF9", ":CF10"};
    return commands;
}

// All but an orderly end of the connection: the tool waits for ever for the rest of an answer that
// ends so, and is meant to.
const QStringList& Faults()
{
    static const QStringList faults{
        "silent", "refusing", "slow", "bytewise", "garbage", "resetting", "short", "long", "wrong"};
    return faults;
}

template<class Widget>
QVector<Widget*> UsableIn(const QWidget& window)
{
    QVector<Widget*> usable;
    const auto all = window.findChildren<Widget*>();
    for (Widget* const widget : all) {
        if (widget->isVisible() && widget->isEnabled()) {
            usable.append(widget);
        }
    }
    return usable;
}

QString NameOf(const QWidget& widget)
{
    return widget.objectName().isEmpty() ? QString::fromLatin1(widget.metaObject()->className())
                                         : widget.objectName();
}

void ClosePopups()
{
    while (QWidget* const popup = QApplication::activePopupWidget()) {
        popup->close();
    }
}

// There is no window manager, which would do so when a dialog has gone.
void ActivateWindow()
{
    MainWindow()->activateWindow();
    QCoreApplication::processEvents();
}

QRandomGenerator RandomOf(quint32 seed, quint32 number)
{
    const quint32 seeds[] = {seed, number};
    return QRandomGenerator(seeds, 2);
}

} // namespace

User::User(quint32 seed, Watch& watch)
    : seed(seed)
    , watch(watch)
    , random(RandomOf(seed, 0))
    , files(random)
{
}

void User::Begin()
{
    unit = std::make_unique<SimulatorProcess>(QStringList(), UnitAddress);
    React();
}

void User::Act(int step)
{
    static const struct
    {
        int weight;
        void (User::*action)();
    } actions[] = {
        {6, &User::Connect},
        {4, &User::TurnAPage},
        {14, &User::PressAButton},
        {4, &User::FillAField},
        {6, &User::FillACell},
        {5, &User::PressKeys},
        {4, &User::UseTheMouse},
        {1, &User::RestTheMouse},
        {2, &User::ChangeTheAddress},
        {2, &User::UpdateTheFirmware},
        {7, &User::HaveAFault},
        {3, &User::TakeAnotherUnit},
    };
    const int sum = std::accumulate(std::begin(actions), std::end(actions), 0,
        [](int weights, const auto& one) { return weights + one.weight; });
    random = RandomOf(seed, static_cast<quint32>(step) + 1);
    patience = OneIn(3) ? Below(ShortPatience) : OneIn(12) ? LongPatience : UsualPatience;
    ticks = 0;
    ActivateWindow();
    acting = true;
    int drawn = Below(sum);
    for (const auto& one : actions) {
        drawn -= one.weight;
        if (drawn < 0) {
            (this->*one.action)();
            break;
        }
    }
    QCoreApplication::processEvents();
    ClosePopups();
    acting = false;
    unit->Forget();
}

void User::Rest()
{
    unit.reset();
    unit = std::make_unique<SimulatorProcess>(QStringList(), UnitAddress);
    auto* const tabs = Find<QTabWidget>("tabWidget");
    ConnectTo(UnitAddress);
    for (int page = 0; page < tabs->count(); ++page) {
        tabs->setCurrentIndex(page);
        QCoreApplication::processEvents();
    }
    tabs->setCurrentIndex(0);
    unit->Forget();
}

void User::Leave()
{
    random = RandomOf(seed, 0);
    ActivateWindow();
    if (OneIn(2)) {
        Say("title bar");
        CloseByTitleBar(MainWindow());
        return;
    }
    // Not in a field nor on the Connect button, where the key takes back what was typed.
    Find<QTabWidget>("tabWidget")->tabBar()->setFocus();
    Say("Escape");
    Press(Qt::Key_Escape);
}

void User::Connect()
{
    const QString address = OneIn(3) ? Any(QStringList{"127.0.0.99", SilentAddress, "10.1.2.3",
                                           "1.2", QString(), "999.0.0.1"})
                                     : unit->State("address");
    Say(QString("connect to ") + address);
    ConnectTo(address);
}

void User::TurnAPage()
{
    auto* const tabs = Find<QTabWidget>("tabWidget");
    const QString title = tabs->tabText(Below(tabs->count()));
    Say(QString("page ") + title);
    ShowPage(title.toLatin1().constData());
}

void User::PressAButton()
{
    const auto buttons = UsableIn<QAbstractButton>(*MainWindow());
    QAbstractButton* const button = Any(buttons);
    Say(QString("button ") + NameOf(*button));
    if (OneIn(4)) {
        button->setFocus();
        Press(Qt::Key_Space);
    } else {
        Click(button);
    }
}

void User::FillAField()
{
    const auto fields = UsableIn<QLineEdit>(*MainWindow());
    QLineEdit* const field = Any(fields);
    const QString text = Any(Texts());
    Say(QString("field %1: %2").arg(NameOf(*field), text));
    Overtype(field, text);
}

void User::FillACell()
{
    ShowPage(OneIn(2) ? "Azimuth Configuration" : "Pol/Eval Configuration");
    auto* const table = Find<QTableWidget>("tblMotorConfiguration");
    const QTableWidgetItem* const cell = table->item(Below(table->rowCount()), 0);
    const QString text = Any(Texts());
    Say(QString("cell: ") + text);
    if (cell != nullptr) {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
            table->visualItemRect(cell).center());
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, Qt::NoModifier,
            table->visualItemRect(cell).center());
    }
    Type(text);
    Press(OneIn(2) ? Qt::Key_Return : Qt::Key_Backspace);
}

void User::PressKeys()
{
    Say("keys");
    for (int count = 1 + Below(12); count > 0 && MainWindow()->isVisible(); --count) {
        const Qt::Key key = Keys[Below(static_cast<int>(std::size(Keys)))];
        Press(key, OneIn(5) ? Qt::ControlModifier : Qt::NoModifier);
    }
}

void User::UseTheMouse()
{
    Say("mouse");
    QWindow* const window = MainWindow()->windowHandle();
    const auto anywhere = [this, window] {
        return QPoint(Below(window->width()), Below(window->height()));
    };
    const Qt::MouseButton button = OneIn(4) ? Qt::RightButton : Qt::LeftButton;
    for (int count = 1 + Below(5); count > 0; --count) {
        if (OneIn(3)) {
            QTest::mouseDClick(window, button, Qt::NoModifier, anywhere());
        } else {
            QTest::mousePress(window, button, Qt::NoModifier, anywhere());
            QTest::mouseMove(window, anywhere());
            QTest::mouseRelease(window, button, Qt::NoModifier, anywhere());
        }
        ClosePopups();
    }
}

void User::RestTheMouse()
{
    ShowPage("Options");
    const auto fields = UsableIn<QLineEdit>(*MainWindow());
    QLineEdit* const field = Any(fields);
    Say(QString("mouse rests on %1").arg(NameOf(*field)));
    QTest::mouseMove(
        MainWindow()->windowHandle(), field->mapTo(MainWindow(), field->rect().center()));
    QTest::qWait(1000);
}

void User::ChangeTheAddress()
{
    ShowPage("IP Configuration");
    const QString address = Any(QStringList{"127.0.0.3", "127.0.0.4", UnitAddress, "10.1.2.3"});
    Say(QString("change the address to ") + address);
    auto* const field = Find<QLineEdit>("txtNewIpAddress");
    if (field->isEnabled()) {
        Overtype(field, address);
        Click(Find<QWidget>("btnSendIpAddress"));
    }
}

void User::UpdateTheFirmware()
{
    ShowPage("Update FW");
    Say("update the firmware");
    for (const char* const name : {"btnSelectFirmware", "btnLoadFirmware", "btnUpdateFirmware"}) {
        Click(Find<QWidget>(name));
    }
}

void User::HaveAFault()
{
    static const QStringList others{"clear", "drop"};
    const QString line =
        OneIn(3) ? Any(others) : QString("fault ") + Any(Faults()) + Any(Commands());
    Say(QString("unit: ") + line);
    unit->Tell(line);
}

void User::TakeAnotherUnit()
{
    const QStringList firmwares{"3.10", "3.0", "2.99", "2.50", QString(300, '\n') + "3", "x"};
    const QStringList words{"500,3,150,1,2,10,0,0,2000,20,50,1",
        "200,200,200,200,200,200,200,200,200,200,200,200",
        "65535,65535,65535,65535,65535,65535,65535,65535", "0"};
    const QString pipe = files.Path("pipe");
    const QStringList descriptions{QString(), QString(1100, ';'),
        QString("<img src=\"%1\">;<img src=\"%1\">;<img src=\"%1\">;<b>").arg(pipe)};
    QStringList options{"--firmware", Any(firmwares), "--azimuth", Any(words), "--polar",
        Any(words), "--away-ms", "200"};
    if (OneIn(2)) {
        options << "--option-descriptions" << Any(descriptions);
    }
    Say(QString("another unit, firmware %1").arg(options.at(1).simplified()));
    unit.reset();
    unit = std::make_unique<SimulatorProcess>(options, UnitAddress);
}

// From the event loops that the program runs in an action, again and again, also within a reaction.
void User::React()
{
    QTimer::singleShot(ReactionMs, this, &User::React);
    if (!acting) {
        return;
    }
    ++ticks;
    QWidget* const popup = QApplication::activePopupWidget();
    QWidget* const window = popup != nullptr ? popup : QApplication::activeModalWidget();
    if (popup != nullptr) {
        popup->close();
    } else if (auto* const files = qobject_cast<QFileDialog*>(window)) {
        ReactTo(*files);
    } else if (auto* const progress = VisibleProgress()) {
        ReactTo(*progress);
    } else if (window != nullptr && window != MainWindow()) {
        ReactToAny(*window);
    }
}

void User::ReactTo(QFileDialog& dialog)
{
    auto* const name = dialog.findChild<QLineEdit*>("fileNameEdit");
    if (ticks > patience || OneIn(6) || name == nullptr) {
        Say("  no file");
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Escape);
        return;
    }
    const QString path = files.Pick(random, dialog.acceptMode() == QFileDialog::AcceptSave);
    Say(QString("  file ") + path);
    name->setText(path);
    QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
}

void User::ReactTo(QProgressDialog& dialog)
{
    if (ticks <= patience) {
        if (OneIn(8)) {
            Disturb();
        }
        return;
    }
    Say("  progress closed");
    dialog.windowHandle()->close();
    if (OneIn(2)) {
        ActivateWindow();
        Press(OneIn(2) ? Qt::Key_Space : Qt::Key_Return);
    }
}

void User::ReactToAny(QWidget& dialog)
{
    const auto buttons = UsableIn<QAbstractButton>(dialog);
    Say(QString("  dialog ") + NameOf(dialog));
    if (buttons.isEmpty() || ticks > patience) {
        dialog.close();
    } else {
        Click(Any(buttons));
    }
}

void User::Disturb()
{
    switch (Below(5)) {
    case 0:
        Press(OneIn(2) ? Qt::Key_Space : Qt::Key_Return);
        break;
    case 1:
        Click(Find<QWidget>("btnConnect"));
        break;
    case 2:
        CloseByTitleBar(MainWindow());
        break;
    case 3:
        QTest::keyClick(VisibleProgress()->windowHandle(), Qt::Key_Escape);
        break;
    default:
        if (OneIn(4)) {
            HaveAFault();
        }
    }
}

void User::Say(const QString& text)
{
    std::printf("%s\n", qPrintable(text.left(200)));
    std::fflush(stdout);
}
