// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QPair>
#include <QString>
#include <QVector>

/// A text that the tab shows, and the description that it offers as a tool tip.
using OptionItems = QVector<QPair<QString, QString>>;

/// What a unit is fitted with. Two flat lists hold it. A position in them is a row of the workbook
/// and, from the third to the last but one, a field on the wire. Seven other lists are made of
/// them, to be shown. The unit keeps both flat lists as text.
class CDeviceOptions : public QObject
{
    Q_OBJECT

public:
    explicit CDeviceOptions(QObject* parent = nullptr);

    OptionItems DcFeedItems;
    OptionItems AttenuatorItems;
    OptionItems Filter1Items;
    OptionItems Filter2Items;
    OptionItems AmplifierItems;
    OptionItems AzimuthRotatorItems;
    OptionItems PolarRotatorItems;
    QVector<QString> InternalOptions;
    QVector<QString> OptionDescriptions;
    bool InternalValid = false;
    bool DescriptionValid = false;

    /// Fills the record from a workbook, which is read twice, once for each column. When the result
    /// is false, `error` is set, the flat lists hold what the file gave, and the lists to show stay
    /// as they were.
    bool ReadOptionsFile(QString path, QString& error);
    bool ReadInternalColumn(QString path);
    bool ReadDescriptionColumn(QString path);

    /// Fills the record from what the unit answers. A text with fewer than 19 fields leaves its
    /// flat list as it was, so the result can be true with old data.
    bool ParseDeviceOptions(QString internalText, QString descriptionText);

    /// What the unit is sent: 19 fields, separated by commas or by semicolons. Empty for an empty
    /// record.
    QString GetInternalOptions() const;
    QString GetOptionDescriptions() const;

    bool IsValid() const;
    /// Makes the lists to show from the flat ones. Leaves them alone, and gives false, while the
    /// record is not valid.
    bool UpdateOptionLists();
    /// Sets DescriptionValid: whether the descriptions, joined by one character, have fewer than
    /// 665 characters. The positions that do not travel count as well.
    bool CheckDescriptionLength();

private:
    void ParseInternalString(const QString& text);
    void ParseDescriptionString(const QString& text);
    static QString JoinOptions(QVector<QString> list, QChar separator);

    void UpdateDcFeedList();
    void UpdateAttenuatorList();
    void UpdateAmplifierList();
    void UpdateFilter1List();
    void UpdateFilter2List();
    void UpdateAzimuthRotatorList();
    void UpdatePolarRotatorList();

    bool IsFitted(int position, const char* module) const;
    QPair<QString, QString> ItemAt(int position) const;
};
