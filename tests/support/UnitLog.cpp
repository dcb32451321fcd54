// SPDX-License-Identifier: MIT

#include "tests/support/UnitLog.h"

#include <QRegularExpression>
#include <QtTest>

namespace {

constexpr int LongestWaitMs = 5000;
constexpr int DigitsOfByte = 2;
constexpr int BytesInLine = 24;

// Commands are in capitals; what the unit says of itself and of its connections is not.
bool IsCommand(const QString& line)
{
    static const QRegularExpression form("^[*A-Z]");
    return form.match(line).hasMatch();
}

} // namespace

QString ShortLine(const QString& command)
{
    const QString mnemonic = command.section(' ', 0, 0);
    const QString payload = command.section(' ', 1);
    const int size = payload.size() / DigitsOfByte;
    if (size <= BytesInLine) {
        return command;
    }
    return QString("%1 %2... (%3 bytes)")
        .arg(mnemonic, payload.left(BytesInLine * DigitsOfByte))
        .arg(size);
}

UnitLog::UnitLog(const QString& fileName)
    : file(fileName)
{
    if (file.open(QIODevice::ReadOnly)) {
        file.seek(file.size());
    }
}

QStringList UnitLog::Commands()
{
    TakeLines();
    return commands;
}

QString UnitLog::AwaitPayload(const QString& mnemonic)
{
    QString payload;
    const bool came = QTest::qWaitFor(
        [&] {
            TakeLines();
            return TakePayload(mnemonic, payload);
        },
        LongestWaitMs);
    return came ? payload : QString();
}

// A line that the unit is still writing stays in the file until it is whole.
void UnitLog::TakeLines()
{
    while (file.isOpen()) {
        const qint64 beginning = file.pos();
        const QByteArray line = file.readLine();
        if (!line.endsWith('\n')) {
            file.seek(beginning);
            return;
        }
        const QString text = QString::fromLatin1(line).trimmed();
        if (IsCommand(text)) {
            commands.append(text);
        }
    }
}

bool UnitLog::TakePayload(const QString& mnemonic, QString& payload)
{
    const QString beginning = mnemonic + ' ';
    while (given < commands.size()) {
        const QString& command = commands.at(given++);
        if (command.startsWith(beginning)) {
            payload = command.mid(beginning.size());
            return true;
        }
    }
    return false;
}
