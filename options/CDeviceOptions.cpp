// SPDX-License-Identifier: MIT

#include "options/CDeviceOptions.h"

#include "options/CExcelReader.h"

#include <QStringList>

#include <algorithm>

namespace {

// The flat lists. The positions in front of the first feed and behind the polar rotator are not
// used and do not travel.
enum Position
{
    DcFeed1 = 2,
    DcFeed2 = 3,
    Attenuator = 4,
    FilterBank1 = 5,
    FilterBank2 = 6,
    AmplifierStage = 7,
    FirstFilterOfBank1 = 8,
    FirstFilterOfBank2 = 14,
    AzimuthRotator = 19,
    PolarRotator = 20,
    PositionCount = 22
};

constexpr int PositionsInFront = 2;
constexpr int FieldsOnTheWire = 19;
constexpr int DescriptionLimit = 665;

constexpr quint16 OptionsSheet = 0;
constexpr int InternalColumn = 0;
constexpr int DescriptionColumn = 1;

constexpr char DcFeedModule[] = "VX440-DCF";
constexpr char AttenuatorModule[] = "VX440-ATT";
constexpr char FilterModule[] = "VX440-FIL";

constexpr const char* AttenuatorLabels[] = {
    "Bypass", "Att. 3dB", "Att. 6dB", "Att. 10dB", "Att. 20dB", "Att. 40dB"};

// Which of the stage's descriptions a row has. There are never more than two.
enum StageDescription
{
    First,
    Second,
    NoDescription
};

struct AmplifierRow
{
    const char* label;
    StageDescription description;
};

constexpr int AmplifierRows = 4;

// A stage that is missing keeps its row.
constexpr struct
{
    const char* module;
    AmplifierRow rows[AmplifierRows];
} Amplifiers[] = {
    {"VX440-AMP", {{"Bypass", NoDescription}, {"HF AMP", NoDescription},
                      {"V/UHF AMP", NoDescription}, {"SHF AMP", NoDescription}}},
    {"VX440-A1", {{"Bypass", NoDescription}, {"Bypass", NoDescription}, {"VX440-A1", First},
                     {"", NoDescription}}},
    {"VX440-A2", {{"Bypass", NoDescription}, {"Bypass", NoDescription}, {"", NoDescription},
                     {"VX440-A2", First}}},
    {"VX440-A1+A2", {{"Bypass", NoDescription}, {"Bypass", NoDescription}, {"VX440-A1", First},
                        {"VX440-A2", Second}}},
};

// At the other positions a workbook has no description.
bool HasDescription(int position)
{
    switch (position) {
    case FilterBank1:
    case FilterBank2:
        return false;
    default:
        return position >= DcFeed1 && position <= PolarRotator;
    }
}

// Puts the fields of the wire at their positions, and `unused` at those that do not travel.
QVector<QString> AtPositions(const QStringList& fields, const QString& unused)
{
    QVector<QString> list(PositionsInFront, unused);
    for (const QString& field : fields) {
        list.append(field.simplified());
    }
    list.append(unused);
    return list;
}

} // namespace

CDeviceOptions::CDeviceOptions(QObject* parent)
    : QObject(parent)
{
}

bool CDeviceOptions::ReadOptionsFile(QString path, QString& error)
{
    const bool hasInternal = ReadInternalColumn(path);
    const bool hasDescriptions = ReadDescriptionColumn(path);
    if (!hasInternal) {
        error = QStringLiteral("Error: Invalid options file!!");
        return false;
    }
    if (!hasDescriptions) {
        error = QStringLiteral("Error: Options description string too long!");
        return false;
    }
    UpdateOptionLists();
    return true;
}

bool CDeviceOptions::ReadInternalColumn(QString path)
{
    InternalOptions.clear();
    CExcelReader reader;
    reader.ReadFile(path); // which has no sheets when it fails
    const auto rows = reader.GetSheet(OptionsSheet);
    for (const QVector<QString>& row : rows) {
        const QString name = row.at(InternalColumn).simplified();
        InternalOptions.append(name.isEmpty() ? QStringLiteral("0") : name);
    }
    InternalValid = InternalOptions.size() == PositionCount;
    return InternalValid;
}

bool CDeviceOptions::ReadDescriptionColumn(QString path)
{
    OptionDescriptions.clear();
    CExcelReader reader;
    reader.ReadFile(path); // which has no columns when it fails
    const bool hasColumn = reader.GetColumnCount(OptionsSheet) > DescriptionColumn;
    if (hasColumn) {
        const auto rows = reader.GetSheet(OptionsSheet).mid(0, PositionCount);
        for (const QVector<QString>& row : rows) {
            const bool described = HasDescription(OptionDescriptions.size());
            OptionDescriptions.append(
                described ? row.at(DescriptionColumn).simplified() : QString());
        }
    }
    return CheckDescriptionLength() && hasColumn;
}

bool CDeviceOptions::ParseDeviceOptions(QString internalText, QString descriptionText)
{
    ParseInternalString(internalText);
    ParseDescriptionString(descriptionText);
    InternalValid = InternalOptions.size() == PositionCount;
    const bool valid = InternalValid && CheckDescriptionLength();
    UpdateOptionLists();
    return valid;
}

// An empty field is dropped, and all that follow move up. The unit writes "0" for nothing.
void CDeviceOptions::ParseInternalString(const QString& text)
{
    const QStringList fields = text.split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (fields.size() >= FieldsOnTheWire) {
        InternalOptions = AtPositions(fields, QStringLiteral("-"));
    }
}

void CDeviceOptions::ParseDescriptionString(const QString& text)
{
    const QStringList fields = text.split(QLatin1Char(';'));
    if (fields.size() >= FieldsOnTheWire) {
        OptionDescriptions = AtPositions(fields, QString());
    }
}

QString CDeviceOptions::GetInternalOptions() const
{
    return JoinOptions(InternalOptions, QLatin1Char(','));
}

QString CDeviceOptions::GetOptionDescriptions() const
{
    return JoinOptions(OptionDescriptions, QLatin1Char(';'));
}

QString CDeviceOptions::JoinOptions(QVector<QString> list, QChar separator)
{
    if (list.size() <= PositionsInFront) {
        return QString();
    }
    list.removeLast();
    list.remove(0, PositionsInFront);
    std::replace(list.begin(), list.end(), QStringLiteral("none"), QStringLiteral("0"));
    return QStringList(list.toList()).join(separator);
}

bool CDeviceOptions::IsValid() const
{
    return InternalValid && DescriptionValid;
}

bool CDeviceOptions::CheckDescriptionLength()
{
    const QString together = QStringList(OptionDescriptions.toList()).join(QLatin1Char(';'));
    DescriptionValid = together.length() < DescriptionLimit;
    return DescriptionValid;
}

bool CDeviceOptions::UpdateOptionLists()
{
    if (IsValid()) {
        UpdateDcFeedList();
        UpdateAttenuatorList();
        UpdateAmplifierList();
        UpdateFilter1List();
        UpdateFilter2List();
        UpdateAzimuthRotatorList();
        UpdatePolarRotatorList();
    }
    return IsValid();
}

void CDeviceOptions::UpdateDcFeedList()
{
    DcFeedItems.clear();
    if (!IsFitted(DcFeed1, DcFeedModule)) {
        return; // and no second feed is shown
    }
    DcFeedItems.append({QStringLiteral("DC-Feed1"), OptionDescriptions.value(DcFeed1)});
    if (IsFitted(DcFeed2, DcFeedModule)) {
        DcFeedItems.append({QStringLiteral("DC-Feed2"), OptionDescriptions.value(DcFeed2)});
    }
}

void CDeviceOptions::UpdateAttenuatorList()
{
    AttenuatorItems.clear();
    if (!IsFitted(Attenuator, AttenuatorModule)) {
        return;
    }
    const QStringList parts = OptionDescriptions.value(Attenuator).split(QLatin1Char(','));
    for (const char* const label : AttenuatorLabels) {
        AttenuatorItems.append({QLatin1String(label), parts.value(AttenuatorItems.size())});
    }
}

void CDeviceOptions::UpdateAmplifierList()
{
    AmplifierItems.clear();
    QStringList parts =
        OptionDescriptions.value(AmplifierStage).split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (parts.size() > 2) {
        parts.clear();
    }
    for (const auto& amplifier : Amplifiers) {
        if (IsFitted(AmplifierStage, amplifier.module)) {
            for (const AmplifierRow& row : amplifier.rows) {
                AmplifierItems.append({QLatin1String(row.label), parts.value(row.description)});
            }
        }
    }
}

// Filters are named in the pattern "VX440-F[0-9]+", but any other text is taken for a name as well.
void CDeviceOptions::UpdateFilter1List()
{
    Filter1Items.clear();
    if (IsFitted(FilterBank1, FilterModule)) {
        for (int filter = FirstFilterOfBank1; filter < FirstFilterOfBank2; ++filter) {
            Filter1Items.append(ItemAt(filter));
        }
    }
}

void CDeviceOptions::UpdateFilter2List()
{
    Filter2Items.clear();
    if (IsFitted(FilterBank1, FilterModule) && IsFitted(FilterBank2, FilterModule)) {
        for (int filter = FirstFilterOfBank2; filter < AzimuthRotator; ++filter) {
            Filter2Items.append(ItemAt(filter));
        }
    }
}

void CDeviceOptions::UpdateAzimuthRotatorList()
{
    AzimuthRotatorItems = {ItemAt(AzimuthRotator)};
}

void CDeviceOptions::UpdatePolarRotatorList()
{
    PolarRotatorItems = {ItemAt(PolarRotator)};
}

bool CDeviceOptions::IsFitted(int position, const char* module) const
{
    return InternalOptions.value(position) == QLatin1String(module);
}

QPair<QString, QString> CDeviceOptions::ItemAt(int position) const
{
    return {InternalOptions.value(position), OptionDescriptions.value(position)};
}
