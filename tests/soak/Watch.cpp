// SPDX-License-Identifier: MIT

#include "tests/soak/Watch.h"

#include "model/CDeviceDatabase.h"
#include "tests/support/WindowTest.h"
#include "tests/support/pages/StatusRows.h"

#include <QDir>
#include <QGroupBox>
#include <QLineEdit>
#include <QTabWidget>

#include <cstdio>

extern "C" std::size_t __sanitizer_get_current_allocated_bytes();

namespace {

/// What a few caches of Qt and of the system may still grow by.
constexpr qint64 MostGrowth = 50'000;
constexpr qint64 BytesOfAnOptionLine = 12'000;

Watch* current = nullptr;

int EntriesOf(const char* folder)
{
    return QDir(QString::fromLatin1(folder))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

int LinesOf(const char* box)
{
    return Find<QGroupBox>(box)->findChildren<QLineEdit*>().size();
}

// What the offscreen platform says of itself.
bool IsOfThePlatform(const QString& message)
{
    return message.startsWith("This plugin does not support");
}

void TakeMessage(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    if (type != QtDebugMsg && type != QtInfoMsg && !IsOfThePlatform(message)) {
        current->Fail(QString("Qt: ") + message);
    }
}

QRegularExpression PatternOf(const QString& text)
{
    QString pattern = QRegularExpression::escape(text);
    pattern.replace(QRegularExpression::escape("<>"), ".*");
    return QRegularExpression(QRegularExpression::anchoredPattern(pattern),
        QRegularExpression::DotMatchesEverythingOption);
}

} // namespace

Resources Resources::Now()
{
    return {static_cast<qint64>(__sanitizer_get_current_allocated_bytes()),
        EntriesOf("/proc/self/task"), EntriesOf("/proc/self/fd"),
        LinesOf("boxOptionAzimuthRotator") + LinesOf("boxOptionPolarRotator")};
}

bool Resources::HasGrownFrom(const Resources& before) const
{
    const int newLines = optionLines - before.optionLines;
    const qint64 growth = bytes - before.bytes;
    std::printf("held: %d threads, %d descriptors, %lld bytes more, %d new option lines\n", threads,
        descriptors, static_cast<long long>(growth), newLines);
    return growth > MostGrowth + newLines * BytesOfAnOptionLine || threads > before.threads ||
           descriptors > before.descriptors;
}

void Watch::Begin()
{
    const QVector<sSTATUS_ROW> rows = StatusRowsOf(UsingPage());
    for (const sSTATUS_ROW& row : rows) {
        knownTexts.append(PatternOf(row.text));
    }
    if (rows.isEmpty()) {
        Fail("no status texts are known");
    }
    pages = Find<QTabWidget>("tabWidget")->size();
    connect(TheDeviceDatabase(), &QAbstractItemModel::dataChanged, this,
        [this](const QModelIndex& cell) {
            if (cell.column() == CDeviceDatabase::ApplicationStatusColumn ||
                cell.column() == CDeviceDatabase::ConnectionStatusColumn) {
                LookAtStatus(cell.data().toString());
            }
        });
    current = this;
    qInstallMessageHandler(TakeMessage);
}

void Watch::LookAtStatus(const QString& text)
{
    const bool known = text.isEmpty() || std::any_of(knownTexts.cbegin(), knownTexts.cend(),
                                             [&text](const QRegularExpression& pattern) {
                                                 return pattern.match(text).hasMatch();
                                             });
    if (!known) {
        Fail(QString("unknown status text: ") + text);
    }
}

void Watch::LookAtTheWindow()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* const window : windows) {
        if (window->isVisible() && window->isModal() && window != MainWindow()) {
            Fail(QString("left open: %1 %2")
                     .arg(QString::fromLatin1(window->metaObject()->className()),
                         window->windowTitle()));
        }
    }
    const QSize size = Find<QTabWidget>("tabWidget")->size();
    if (size != pages) {
        Fail(QString("the pages have %1 pixels of height and had %2")
                 .arg(size.height())
                 .arg(pages.height()));
        pages = size;
    }
}

void Watch::Fail(const QString& text)
{
    ++failures;
    std::printf("FAILED: %s\n", qPrintable(text.left(1000)));
    std::fflush(stdout);
}
