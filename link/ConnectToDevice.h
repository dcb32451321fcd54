// SPDX-License-Identifier: MIT

#pragma once

#include <QString>

/// What every caller gives for `retries`.
constexpr ushort ConnectionRetries = 3;

/// Connects to the unit at the model's address and reports through the model's status texts.
/// `address` is not looked at. Blocks under a progress dialog until the link is up, the attempts
/// are used up or the user closes the dialog. There are `retries` + 1 attempts of at most 20
/// seconds each.
///
/// True when the model's address is valid, whether or not the link is up: see IsConnected().
bool ConnectToDevice(ushort retries, QString address);
