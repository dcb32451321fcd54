// SPDX-License-Identifier: MIT

#pragma once

#include <QDataWidgetMapper>
#include <QScopedPointer>
#include <QWidget>

/// A page of the main dialog. The dialog walks its pages twice after a connection attempt: first
/// ConnectionStatusChanged() on each, then UpdateControls() on each.
class CTabBaseClass : public QWidget
{
    Q_OBJECT

public:
    explicit CTabBaseClass(QWidget* parent);
    ~CTabBaseClass() override;

    /// The connection state may have changed: brings the tab up to date. May read from the unit,
    /// and then blocks until that is done.
    virtual void ConnectionStatusChanged() = 0;

    /// Sets the enabled state of the tab's controls. Does not talk to the unit. May be called while
    /// one of the tab's own slots is still running: that is when a command notices that the link is
    /// lost.
    virtual void UpdateControls();

protected:
    /// Null until the tab binds its widgets to columns of the model.
    QScopedPointer<QDataWidgetMapper> mapper;
};
