// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

/// The number of this system's error for a connection that the peer has reset.
constexpr std::uint32_t ConnectionReset = 104; // ECONNRESET
