// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

// These functions read the identity of the unit into the model, or change the unit. After a change
// the caller connects anew. None of them sets its `error`.

/// Asks the unit for its identity and the system for its MAC address. Stores MAC address, part
/// number, serial number and firmware version in the model. What did not come is stored as an empty
/// text, and while the link is down all four are. The version keeps the carriage return of the
/// unit's answer. Blocks for about 50 ms, or two seconds when the unit is silent, and then as long
/// as the resolution takes.
void ReadDeviceInfo();

/// The identity text that the long CF2 carries: the unit's answer to "*IDN?" without the version.
QString BuildDeviceIdentity(QString part, QString serial);

/// Sends the long CF2 with the addresses of the model and the parameters 0 to 9 of both motors, so
/// that these stay as they are. The status line names `description` as what is changing.
bool ChangeDeviceConfiguration(QString serial, QString part, QString mac, QString description);

/// For firmware below 3.0: the long CF2 with the model's identity and another MAC address.
bool ChangeMacViaConfiguration(QString mac, QString& error);

/// For firmware 3.0 and later: the short CF2, and 100 ms for the unit to take it.
bool ChangeMacDirect(QString mac, QString& error);

/// Sends CF1 and sets `*changed` to true. Sends nothing when both texts are the model's own: that
/// is a success, too. `*changed` stays as it was when nothing was sent.
bool ChangeIpConfiguration(QString ip, QString mask, QString& error, bool* changed);
