// SPDX-License-Identifier: MIT

#pragma once

#include <QLatin1Char>

#include <initializer_list>

class QEvent;
class QLineEdit;
class QObject;

/// For the event filter of whoever owns fields with an input mask. Makes each field take what the
/// user types or pastes as one address. `separator` stands between the numbers of the address.
/// True: the event was for one of the fields and needs nothing more.
///
/// - A click into an empty field puts the cursor at its beginning.
/// - The Tab key and the label's shortcut select all, so that typing replaces it. Without this the
///   cursor would stand behind the text, where no digit fits.
/// - A pasted or dropped text replaces the field's text if it is a whole address. Any other text
///   changes nothing. Without this the mask would pick single characters out of it.
bool FilterMaskedFields(std::initializer_list<QLineEdit*> fields, QLatin1Char separator,
    const QObject* watched, QEvent* event);
