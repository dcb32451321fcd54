#pragma once

/// Has screen readers told what Qt's own interfaces do not: that a bar without an end is busy, and
/// that the status line is an alert. A bar's changes are told once a percent: a firmware transfer
/// sets it for each byte, and a listener would make it six times as long.
///
/// Once, before the first widget.
void InstallAccessibility();
