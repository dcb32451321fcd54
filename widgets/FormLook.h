// SPDX-License-Identifier: MIT

#pragma once

#include <QFont>

/// The font that the forms were drawn for: 11 pixels of a narrow family, or 10 of a wider one where
/// no narrow one is installed. All of its properties are set, so that a theme changes none of them.
QFont FormFont();
