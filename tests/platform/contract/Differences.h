// SPDX-License-Identifier: MIT

#pragma once

#include <string>

/// Why a sentence of the contract does not hold on the system that the program runs on, where that
/// is known; else empty.
std::string WhyThisSystemDiffers(const std::string& sentence);
