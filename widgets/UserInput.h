// SPDX-License-Identifier: MIT

#pragma once

#include <QAbstractButton>

#include <functional>

/// Calls `work`, unless another call of RunAlone() is still running. For the main thread.
void RunAlone(const std::function<void()>& work);

/// Lets the Return key press a button that has the focus, as the space bar does.
void PressByReturn(QAbstractButton* button);

/// Lets a click of `button` call a slot of `receiver`, but never inside the slot of another click.
/// A slot may let events through, and a click that comes then does nothing. Such a click waits in
/// the queue until a dialog has gone, or comes from a screen reader, which no dialog stops. Return
/// counts as a click.
template<class Receiver>
void ConnectClick(QAbstractButton* button, Receiver* receiver, void (Receiver::*slot)())
{
    QObject::connect(button, &QAbstractButton::clicked, receiver,
        [receiver, slot] { RunAlone([receiver, slot] { (receiver->*slot)(); }); });
    PressByReturn(button);
}

/// Handles the events that wait, such as repaints, but no keys and clicks. These wait until the
/// work is done.
void ProcessEventsBesidesInput();
