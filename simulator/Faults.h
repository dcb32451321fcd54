// SPDX-License-Identifier: MIT

#pragma once

#include "simulator/Command.h"

#include <QVector>

namespace simulator {

/// What can go wrong with the answer to a command. Unless its description says otherwise, the unit
/// still carries the command out, and only the answer is bad.
enum class FaultKind
{
    None,
    Silent,
    Refusing,
    Slow,
    Bytewise,
    Garbage,
    Closing,
    Resetting,
    Short,
    Long,
    Wrong
};

struct FaultDescription
{
    FaultKind kind;
    const char* name;
    const char* effect;
};

/// Every fault: all of FaultKind but None.
const QVector<FaultDescription>& FaultDescriptions();

/// The parts of "KIND[:COMMAND[:NTH]]".
struct Fault
{
    FaultKind kind = FaultKind::None;
    /// Command::Unknown stands for every command.
    Command command = Command::Unknown;
    /// 1 for the first such command after the fault was set, and so on; 0 for all of them.
    int occurrence = 0;
};

/// False, with the reason in `error`, when the text does not name a fault.
bool ParseFault(const QString& text, Fault& fault, QString& error);

/// The text from which ParseFault() makes this fault.
QString FaultText(const Fault& fault);

/// The faults that are set. When several fit a command, the one that was set last wins.
class Faults
{
public:
    void Add(const Fault& fault);
    void Clear();

    /// What to do wrong with this command. To be called once for each command, because every fault
    /// counts the calls.
    FaultKind Meet(Command command);

    /// One text for each fault, oldest first.
    QStringList Texts() const;

private:
    struct Entry
    {
        Fault fault;
        int met;
    };

    QVector<Entry> entries;
};

} // namespace simulator
