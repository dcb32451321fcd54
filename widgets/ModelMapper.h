// SPDX-License-Identifier: MIT

#pragma once

class QDataWidgetMapper;

/// Makes a mapper on the model's one row. The caller owns it, adds widgets and calls toFirst(). The
/// widgets follow the model. What the user types stays in a field until Escape brings the model's
/// value back. The user can leave a field whatever stands in it. A field keeps the focus when its
/// window loses it.
QDataWidgetMapper* NewModelMapper();
