#pragma once

class QDataWidgetMapper;

/// A new mapper on the model's one row, which the caller owns. Widgets that are added to it follow
/// the model; what the user types into them stays there until Escape in the field brings the
/// model's value back. A field can be left whatever stands in it, and keeps the focus when its
/// window loses it. The caller adds widgets and calls toFirst().
QDataWidgetMapper* NewModelMapper();
