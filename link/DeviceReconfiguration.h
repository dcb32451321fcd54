#pragma once

#include <QString>

// What reads the unit's identity into the model, and what changes the unit in a way after which the
// caller connects anew. The `error` of three of them is accepted and left alone.

/// Asks the unit for its identity and the system for its MAC address, and stores MAC address, part
/// number, serial number and firmware version in the model: empty texts for what did not come, and
/// for all four while the link is down. The version keeps the carriage return of the unit's answer.
/// Blocks for about 50 ms, or two seconds when the unit is silent, and then as long as the
/// resolution takes.
void ReadDeviceInfo();

/// The identity text that the long CF2 carries: the unit's answer to "*IDN?" without the version.
QString BuildDeviceIdentity(QString part, QString serial);

/// Sends the long CF2 with the model's addresses and the parameters 0 to 9 of both motors, so that
/// these stay as they are. `description` is what the status line says is changing.
bool ChangeDeviceConfiguration(QString serial, QString part, QString mac, QString description);

/// For firmware below 3.0: the long CF2 with the model's identity and another MAC address.
bool ChangeMacViaConfiguration(QString mac, QString& error);

/// For firmware 3.0 and later: the short CF2, and 100 ms for the unit to take it.
bool ChangeMacDirect(QString mac, QString& error);

/// Sends CF1, unless both texts are the model's own: that is a success without a frame. `*changed`
/// becomes true when a frame went out, and stays as it was otherwise.
bool ChangeIpConfiguration(QString ip, QString mask, QString& error, bool* changed);
