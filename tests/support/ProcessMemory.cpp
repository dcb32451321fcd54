// SPDX-License-Identifier: MIT

#include "tests/support/ProcessMemory.h"

#include <QFile>

namespace {

double StatusKb(const QByteArray& name)
{
    QFile status("/proc/self/status");
    if (status.open(QIODevice::ReadOnly)) {
        for (QByteArray line = status.readLine(); !line.isEmpty(); line = status.readLine()) {
            if (line.startsWith(name)) {
                return line.simplified().split(' ').value(1).toDouble();
            }
        }
    }
    return 0;
}

} // namespace

double MemoryInUseKb()
{
    return StatusKb("VmRSS:");
}

double PeakMemoryKb()
{
    return StatusKb("VmHWM:");
}

bool ForgetPeakMemory()
{
    QFile file("/proc/self/clear_refs");
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && file.write("5") == 1;
}
