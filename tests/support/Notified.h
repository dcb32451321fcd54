// SPDX-License-Identifier: MIT

#pragma once

#include "model/CDeviceDatabase.h"

#include <QStringList>
#include <QVector>

#include <utility>

/// What a model notifies as long as the object lives, in order.
class Notified
{
    Q_DISABLE_COPY(Notified)

public:
    explicit Notified(const CDeviceDatabase& database = *TheDeviceDatabase())
    {
        connection = QObject::connect(
            &database, &QAbstractItemModel::dataChanged, [this](const QModelIndex& cell) {
                columns.append(cell.column());
                if (cell.column() == CDeviceDatabase::ApplicationStatusColumn) {
                    statuses.append(cell.data().toString());
                }
            });
    }
    ~Notified() { QObject::disconnect(connection); }

    /// The columns since the last call of this.
    QVector<int> TakeColumns() { return std::exchange(columns, {}); }

    /// The columns, as often as each was notified. -1 for a notification that names no cell.
    QVector<int> columns;
    /// What the application's status was at each notification of its column.
    QStringList statuses;

private:
    QMetaObject::Connection connection;
};
