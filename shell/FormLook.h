#pragma once

#include <QFont>

/// The letters that the forms were drawn for: 11 pixels of a narrow family, or 10 of a wider one
/// where there is none. All of its properties are set, so that no theme's show through.
QFont FormFont();
