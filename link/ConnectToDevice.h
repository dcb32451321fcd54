#pragma once

#include <QString>

/// What every caller gives for `retries`.
constexpr ushort ConnectionRetries = 3;

/// Connects to the unit at the model's address; `address` is not looked at. Blocks under a progress
/// dialog until the link is up, the attempts are used up or the dialog is closed: at most 20
/// seconds for each of `retries` + 1 attempts. Reports through the model's status texts.
///
/// True when the model's address is valid, whether or not the link is up: see IsConnected().
bool ConnectToDevice(ushort retries, QString address);
