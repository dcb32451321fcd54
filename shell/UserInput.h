#pragma once

#include <QAbstractButton>

#include <functional>

/// Calls `work`, unless another call of RunAlone() is still running. For the main thread.
void RunAlone(const std::function<void()>& work);

/// Has the Return key press a button that has the focus, as the space bar does.
void PressByReturn(QAbstractButton* button);

/// Has a click of `button` call a slot of `receiver`, but never inside the slot of another click. A
/// slot may let events through; a click that comes then does nothing. It comes from the queue when
/// a dialog has gone, or from a screen reader, which no dialog stops. Return is a click, too.
template<class Receiver>
void ConnectClick(QAbstractButton* button, Receiver* receiver, void (Receiver::*slot)())
{
    QObject::connect(button, &QAbstractButton::clicked, receiver,
        [receiver, slot] { RunAlone([receiver, slot] { (receiver->*slot)(); }); });
    PressByReturn(button);
}

/// Lets the window repaint itself and whatever else waits, except keys and clicks: these are for
/// the window as it is when the work is done.
void ProcessEventsBesidesInput();
