// SPDX-License-Identifier: MIT

#pragma once

/// Tells screen readers what Qt's own interfaces do not: a bar without an end is busy, and the
/// status line is an alert. Tells them of a bar once a percent. A firmware transfer sets its bar
/// for each byte; if each were told, it would take six times as long.
///
/// Call it once, before the first widget.
void InstallAccessibility();
