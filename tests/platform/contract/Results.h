// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// What a program's checks found, one line each: "PASS", "FAIL", or "OTHER" where it is known that
/// this system answers otherwise, and a sentence that says what holds. The sentences are the same
/// on every system.
namespace results {

/// Prints one line; behind "OTHER" a second one, indented, says why.
void Expect(const std::string& sentence, bool holds);

/// True when no line was "FAIL".
bool AllHold();

} // namespace results
