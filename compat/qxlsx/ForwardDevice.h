// SPDX-License-Identifier: MIT

#pragma once

#include <QIODevice>

namespace QXlsx {

/// A device that is read from the front only, and never written.
class ForwardDevice : public QIODevice
{
public:
    bool isSequential() const override { return true; }

protected:
    qint64 writeData(const char*, qint64) override { return {}; }
};

} // namespace QXlsx
