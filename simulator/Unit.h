// SPDX-License-Identifier: MIT

#pragma once

#include "simulator/Command.h"
#include "simulator/FirmwareTransfer.h"

#include <QFlags>
#include <QHostAddress>
#include <QPair>

namespace simulator {

/// The number of words of a rotator from firmware 3.0 on. Firmware below 3.0 uses the first ten.
constexpr int WordsPerMotor = 12;

/// What a unit is when it is switched on.
struct UnitSettings
{
    QString firmware;
    /// The version that an update installs. Empty for the version with the next minor number.
    QString newFirmware;
    QString part;
    QString serial;
    QByteArray mac; ///< six bytes
    QHostAddress address;
    QHostAddress mask;
    QVector<quint16> azimuth; ///< WordsPerMotor words
    QVector<quint16> polar;   ///< WordsPerMotor words
    QByteArray options;
    QByteArray optionDescriptions;
    QByteArray eeprom; ///< EepromSize bytes
};

/// What a command has done that concerns the world around the unit.
enum class Effect
{
    AddressChanged = 1,
    MacChanged = 2,
    EepromChanged = 4,
    ImageComplete = 8,
    Restarting = 16
};
Q_DECLARE_FLAGS(Effects, Effect)
Q_DECLARE_OPERATORS_FOR_FLAGS(Effects)

struct Outcome
{
    QByteArray answer;
    Effects effects;
};

/// The state of one unit and its rules: what each command changes, and what the unit answers. It
/// knows neither sockets nor files.
class Unit
{
public:
    explicit Unit(const UnitSettings& settings);

    Outcome CarryOut(const Frame& frame);

    /// Behaves like a unit that will not change anything: it answers an acknowledged command with
    /// 0, drops a command without an answer, and answers a query as usual.
    Outcome Refuse(const Frame& frame);

    /// What a faulty unit could answer to the frame in place of the right answer.
    QByteArray WrongAnswer(const Frame& frame) const;

    /// Takes back the new address and mask of Effect::AddressChanged, when the unit cannot move
    /// there.
    void KeepAddress(const QHostAddress& address, const QHostAddress& mask);

    /// Ends the restart that Effect::Restarting began. The new firmware runs if a whole image was
    /// there.
    void FinishUpdate();

    Generation CurrentGeneration() const { return GenerationOf(state.firmware); }
    const UnitSettings& State() const { return state; }
    QByteArray FirmwareImage() const { return transfer.Image(); }

    /// All that the unit holds, in pairs of a key without blanks and a value.
    QVector<QPair<QString, QString>> Report() const;

private:
    QByteArray Identity() const;
    QByteArray ConfigurationBlock(Generation generation) const;
    QByteArray EepromBytes(const QByteArray& request) const;

    Outcome SetAddress(const QByteArray& addressAndMask);
    Outcome SetMac(const QByteArray& mac);
    Outcome SetConfiguration(const QByteArray& block);
    void SetIdentity(const QByteArray& identity);
    Outcome WriteEeprom(const QByteArray& offsetAndData);
    Outcome TakeChecksum(const QByteArray& checksum);

    UnitSettings state;
    FirmwareTransfer transfer;
    bool updateValid = false;
};

} // namespace simulator
