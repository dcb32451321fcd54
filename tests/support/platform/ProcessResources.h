// SPDX-License-Identifier: MIT

#pragma once

/// How many files, sockets and other things of the system this process has open.
int OpenHandles();

/// How many threads run in this process.
int RunningThreads();
