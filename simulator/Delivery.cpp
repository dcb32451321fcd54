// SPDX-License-Identifier: MIT

#include "simulator/Delivery.h"

#include <QRandomGenerator>

namespace simulator {

namespace {

// Longer than the system takes to send a segment off.
constexpr int BytewiseGapMs = 3;

QVector<Delivery> AtOnce(const QByteArray& bytes)
{
    return {Delivery{0, bytes, Ending::Open}};
}

QVector<Delivery> OneByOne(const QByteArray& bytes)
{
    QVector<Delivery> deliveries;
    for (const char byte : bytes) {
        deliveries.append(Delivery{BytewiseGapMs, QByteArray(1, byte), Ending::Open});
    }
    return deliveries;
}

QByteArray Garbage(int size)
{
    // The seed is always the same, so that a failure can be repeated.
    static QRandomGenerator random(440);
    QByteArray bytes;
    while (bytes.size() < size) {
        const char byte = static_cast<char>(random.bounded(256));
        if (byte != '\r') {
            bytes.append(byte);
        }
    }
    return bytes;
}

QByteArray TwiceOver(const QByteArray& answer)
{
    const int lineEnd = answer.endsWith('\r') ? 1 : 0;
    return answer.chopped(lineEnd) + answer;
}

} // namespace

QVector<Delivery> Deliveries(
    FaultKind fault, const QByteArray& answer, const QByteArray& wrongAnswer, int slowMs)
{
    switch (fault) {
    case FaultKind::Closing:
        return {Delivery{0, QByteArray(), Ending::Closed}};
    case FaultKind::Resetting:
        return {Delivery{0, QByteArray(), Ending::Reset}};
    default:
        break;
    }
    if (answer.isEmpty()) {
        return {};
    }
    switch (fault) {
    case FaultKind::Silent:
        return {};
    case FaultKind::Slow:
        return {Delivery{slowMs, answer, Ending::Open}};
    case FaultKind::Bytewise:
        return OneByOne(answer);
    case FaultKind::Garbage:
        return AtOnce(Garbage(answer.size()));
    case FaultKind::Short:
        return AtOnce(answer.left(answer.size() / 2));
    case FaultKind::Long:
        return AtOnce(TwiceOver(answer));
    case FaultKind::Wrong:
        return AtOnce(wrongAnswer);
    default:
        return AtOnce(answer);
    }
}

} // namespace simulator
