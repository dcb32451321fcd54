// SPDX-License-Identifier: MIT

#include "simulator/platform/StandardInput.h"

#include <QFile>
#include <QSocketNotifier>

namespace simulator::platform {

namespace {

constexpr int Descriptor = 0;

} // namespace

class StandardInput::Source
{
public:
    Source(const std::function<void(char)>& take, const std::function<void()>& ended)
        : take(take)
        , ended(ended)
        , ready(Descriptor, QSocketNotifier::Read)
    {
        QObject::connect(&ready, &QSocketNotifier::activated, &ready, [this] { ReadByte(); });
        if (!input.open(Descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            End();
        }
    }

private:
    void ReadByte()
    {
        // Only one byte is known to be there. A read of more could block.
        char byte = 0;
        if (input.read(&byte, 1) == 1) {
            take(byte);
        } else {
            End();
        }
    }

    void End()
    {
        ready.setEnabled(false);
        ended();
    }

    const std::function<void(char)> take;
    const std::function<void()> ended;
    QFile input;
    QSocketNotifier ready;
};

StandardInput::StandardInput(
    const std::function<void(char)>& take, const std::function<void()>& ended)
    : source(std::make_unique<Source>(take, ended))
{
}

StandardInput::~StandardInput() = default;

} // namespace simulator::platform
