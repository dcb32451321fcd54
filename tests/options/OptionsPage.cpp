#include "tests/options/OptionsPage.h"

#include "link/CDeviceCommunication.h"
#include "tests/support/SimulatorProcess.h"

#include <QGroupBox>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QtTest>

QStringList Split(const char* texts)
{
    return QString(texts).split('|');
}

QStringList UnitWith(const QString& options, const QString& descriptions)
{
    return {"--options", options, "--option-descriptions", descriptions};
}

QStringList UnitWith(const char* options, const char* descriptions)
{
    return UnitWith(QString(options), QString(descriptions));
}

QStringList FullUnit()
{
    return UnitWith(FullOptions, FullDescriptions);
}

bool Connect(const SimulatorProcess& unit)
{
    CDeviceCommunication* const link = TheDeviceCommunication();
    link->StartConnection(unit.Address().toLatin1());
    return unit.IsReady() && QTest::qWaitFor([link] { return link->IsConnected(); });
}

QGroupBox* Box(const QWidget& page, int group)
{
    return page.findChild<QGroupBox*>(QString(BoxOf[group]));
}

QPushButton* Button(const QWidget& page, const char* name)
{
    return page.findChild<QPushButton*>(QString(name));
}

QVector<QLineEdit*> Lines(const QWidget& page, int group)
{
    QVector<QLineEdit*> lines;
    const QLayout* const layout = Box(page, group)->layout();
    for (int item = 0; layout != nullptr && item < layout->count(); ++item) {
        lines.append(qobject_cast<QLineEdit*>(layout->itemAt(item)->widget()));
    }
    return lines;
}

QStringList Shown(const QWidget& page, int group)
{
    QStringList texts;
    const auto lines = Lines(page, group);
    for (const QLineEdit* const line : lines) {
        texts.append(line->text());
    }
    return texts;
}

QVector<QStringList> Shown(const QWidget& page)
{
    QVector<QStringList> groups;
    for (int group = 0; group < Groups; ++group) {
        groups.append(Shown(page, group));
    }
    return groups;
}

QVector<QStringList> FullGroups()
{
    return {Split("DC-Feed1|DC-Feed2"),
        Split("Bypass|Att. 3dB|Att. 6dB|Att. 10dB|Att. 20dB|Att. 40dB"),
        Split("VX440-F11|VX440-F12|VX440-F13|VX440-F14||VX440-F16"),
        Split("VX440-F21|VX440-F22|VX440-F23|VX440-F24|VX440-F25"),
        Split("Bypass|Bypass|VX440-A1|VX440-A2"), Split("ProSisTel"), Split("TD552")};
}

QVector<QStringList> EmptyGroups()
{
    return {{}, {}, {}, {}, {}, {QString()}, {QString()}};
}
