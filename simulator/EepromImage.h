// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QString>

namespace simulator {

/// Bytes of a unit's EEPROM: the device region at 0 and the board region at 1200.
constexpr int EepromSize = 2400;

/// An EEPROM as it leaves the factory. Each region begins with a block of good hardware data, and
/// the rest is erased (0xFF). The device block has the digits of `part` ("dddd.dddd.dd") and of
/// `serial`, as far as they are there.
QByteArray FactoryEeprom(const QString& part, const QString& serial);

} // namespace simulator
