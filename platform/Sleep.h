// SPDX-License-Identifier: MIT

#pragma once

namespace platform {

/// Blocks the calling thread for at least that long. Runs no event loop.
void Sleep(unsigned milliseconds);

} // namespace platform
