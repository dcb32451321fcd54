#pragma once

#include <QLatin1Char>

#include <initializer_list>

class QEvent;
class QLineEdit;
class QObject;

/// What the owner of fields with an input mask does in its event filter, so that each of them takes
/// what a user types or pastes as one address. `separator` stands between the address's numbers.
/// True: the event was for one of the fields, and is dealt with.
///
/// - A click into an empty field puts the cursor at its beginning.
/// - The Tab key and the label's shortcut select all, so that typing replaces it. A masked field
///   would else put the cursor behind what is there, where no digit fits.
/// - A pasted or dropped text replaces the field's, if it is an address as a whole. Any other
///   leaves the field alone: the mask would take single characters out of it.
bool FilterMaskedFields(std::initializer_list<QLineEdit*> fields, QLatin1Char separator,
    const QObject* watched, QEvent* event);
