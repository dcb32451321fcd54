// SPDX-License-Identifier: MIT

#include "simulator/Faults.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace simulator {

namespace {

const FaultDescription* FindFault(const QString& name)
{
    const QVector<FaultDescription>& all = FaultDescriptions();
    const auto found = std::find_if(all.cbegin(), all.cend(),
        [&name](const FaultDescription& fault) { return name == QLatin1String(fault.name); });
    return found == all.cend() ? nullptr : &*found;
}

QString FaultName(FaultKind kind)
{
    const QVector<FaultDescription>& all = FaultDescriptions();
    const auto found = std::find_if(all.cbegin(), all.cend(),
        [kind](const FaultDescription& fault) { return kind == fault.kind; });
    return found == all.cend() ? QString() : QString::fromLatin1(found->name);
}

} // namespace

const QVector<FaultDescription>& FaultDescriptions()
{
    static const QVector<FaultDescription> descriptions = {
        {FaultKind::Silent, "silent", "carries the command out and never answers"},
        {FaultKind::Refusing, "refusing",
            "changes nothing and acknowledges with 0; queries are answered"},
        {FaultKind::Slow, "slow", "answers after the time of --slow-ms"},
        {FaultKind::Bytewise, "bytewise", "answers one byte at a time, each a segment of its own"},
        {FaultKind::Garbage, "garbage",
            "answers with as many other bytes, none of them a carriage return"},
        {FaultKind::Closing, "closing", "closes the connection in place of the answer"},
        {FaultKind::Resetting, "resetting", "resets the connection in place of the answer"},
        {FaultKind::Short, "short", "sends the first half of the answer only"},
        {FaultKind::Long, "long", "sends the answer twice over, a text in one line"},
        {FaultKind::Wrong, "wrong",
            "answers with a field too few, another block, or an acknowledgement of 2"},
    };
    return descriptions;
}

bool ParseFault(const QString& text, Fault& fault, QString& error)
{
    // The occurrence is taken from the end: some mnemonics have colons of their own.
    static const QRegularExpression form(
        QStringLiteral("^(?<kind>[^:]*)(:(?<command>.*?)(:(?<occurrence>[0-9]+))?)?$"));
    const QRegularExpressionMatch match = form.match(text);
    const QString kind = match.captured(QStringLiteral("kind"));
    const QString command = match.captured(QStringLiteral("command"));
    const QString occurrence = match.captured(QStringLiteral("occurrence"));

    const FaultDescription* description = FindFault(kind);
    if (description == nullptr) {
        error = QStringLiteral("no such fault: %1").arg(kind);
        return false;
    }
    const CommandRule* rule = FindCommand(command.toLatin1());
    if (!command.isEmpty() && rule == nullptr) {
        error = QStringLiteral("no such command: %1").arg(command);
        return false;
    }
    if (!occurrence.isEmpty() && occurrence.toInt() < 1) {
        error = QStringLiteral("occurrences count from 1: %1").arg(occurrence);
        return false;
    }
    fault = Fault{
        description->kind, rule != nullptr ? rule->command : Command::Unknown, occurrence.toInt()};
    return true;
}

QString FaultText(const Fault& fault)
{
    QString text = FaultName(fault.kind);
    const CommandRule* rule = FindCommand(fault.command);
    if (rule != nullptr || fault.occurrence > 0) {
        text += QLatin1Char(':') + QString::fromLatin1(rule != nullptr ? rule->mnemonic : "");
    }
    if (fault.occurrence > 0) {
        text += QLatin1Char(':') + QString::number(fault.occurrence);
    }
    return text;
}

void Faults::Add(const Fault& fault)
{
    entries.append(Entry{fault, 0});
}

void Faults::Clear()
{
    entries.clear();
}

FaultKind Faults::Meet(Command command)
{
    FaultKind kind = FaultKind::None;
    for (Entry& entry : entries) {
        if (entry.fault.command != Command::Unknown && entry.fault.command != command) {
            continue;
        }
        ++entry.met;
        if (entry.fault.occurrence == 0 || entry.fault.occurrence == entry.met) {
            kind = entry.fault.kind;
        }
    }
    return kind;
}

QStringList Faults::Texts() const
{
    QStringList texts;
    for (const Entry& entry : entries) {
        texts.append(FaultText(entry.fault));
    }
    return texts;
}

} // namespace simulator
