// SPDX-License-Identifier: MIT

#include "tests/options/OptionsPage.h"

#include <QLayout>

#include <functional>

namespace {

QVector<QStringList> OfEachLine(
    const QWidget& page, const std::function<QString(const QLineEdit&)>& text)
{
    QVector<QStringList> groups(Groups);
    for (int group = 0; group < Groups; ++group) {
        for (const QLineEdit* const line : Lines(page, group)) {
            groups[group].append(text(*line));
        }
    }
    return groups;
}

} // namespace

QStringList Split(const char* texts)
{
    return QString(texts).split('|');
}

QStringList FullNames()
{
    return QStringList{"a", "b"} + QString(FullOptions).split(',') + QStringList{"c"};
}

QStringList FullTexts()
{
    return QStringList{QString(), QString()} + QString(FullDescriptions).split(';');
}

QGroupBox* Box(const QWidget& page, int group)
{
    return page.findChild<QGroupBox*>(BoxOf[group]);
}

QPushButton* Button(const QWidget& page, const char* name)
{
    return page.findChild<QPushButton*>(name);
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

QVector<QStringList> Shown(const QWidget& page)
{
    return OfEachLine(page, [](const QLineEdit& line) { return line.text(); });
}

QVector<QStringList> ToolTips(const QWidget& page)
{
    return OfEachLine(page, [](const QLineEdit& line) { return line.toolTip(); });
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
