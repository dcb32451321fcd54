// SPDX-License-Identifier: MIT

#pragma once

/// How much of this process's memory is really there, in kB. 0 where the system does not tell.
double MemoryInUseKb();

/// The most that MemoryInUseKb() has been since the start, or since ForgetPeakMemory().
double PeakMemoryKb();

/// The peak begins anew from what is in use now. False where the system does not allow it.
bool ForgetPeakMemory();
