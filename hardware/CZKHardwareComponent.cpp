// SPDX-License-Identifier: MIT

#include "hardware/CZKHardwareComponent.h"

#include <QDir>
#include <QFile>

namespace {

constexpr int HeaderSize = 8;
constexpr int MandatoryBlock = 1;
constexpr int SerialNumberInFileName = 6;
constexpr int UnknownTexts = 6;

} // namespace

const QStringList BoardDataColumns{
    QStringLiteral("Component"),
    QStringLiteral("Name"),
    QStringLiteral("Serial No."),
    QStringLiteral("Part No."),
    QStringLiteral("Variant"),
    QStringLiteral("HW code"),
    QStringLiteral("Prod. Index"),
    QStringLiteral("Test Instruction Index"),
    QStringLiteral("Prod. Date"),
};

QString GetEepromDirectory()
{
    QString path = qEnvironmentVariable("PROGRAMDATA") + QDir::separator();
    for (const char* const folder : {"Zelma-Kovinth", "VX440", "Eeprom"}) {
        path += QLatin1String(folder) + QDir::separator();
        QDir().mkdir(path);
    }
    return path;
}

CZKHardwareComponent::CZKHardwareComponent(QString directory, QString name, quint32 componentCode,
    quint32 areaStart, quint32 areaLength, quint8 group)
    : FilePath(directory + QDir::separator() + name + QStringLiteral(".bin"))
    , Name(name)
    , AreaStart(areaStart)
    , AreaLength(areaLength)
    , ComponentCode(componentCode)
    , Group(group)
{
}

CZKHardwareComponent::~CZKHardwareComponent() = default;

bool CZKHardwareComponent::ParseImage(QVector<uchar> image, bool& ok)
{
    CZKEepromBlockHeader header;
    ok = false;
    if (image.size() > HeaderSize && header.ParseHeader(image) &&
        header.GetBlockKind() == MandatoryBlock) {
        Block.reset(new CZKMandatoryEepromBlock(header));
        ok = Block->ParseBody(image);
    }
    return ok;
}

void CZKHardwareComponent::AppendRowTexts(QStringList& texts, quint8 group)
{
    if (!Block) {
        texts << Name << QStringLiteral("Not loaded");
        for (int i = 0; i < UnknownTexts; ++i) {
            texts << QStringLiteral("--");
        }
        return;
    }
    if (group != Group) {
        return;
    }
    texts << Name << Block->GetNameText() << Block->GetSerialNumberText()
          << Block->GetPartNumberText() << Block->GetVariantText() << Block->GetHwCodeText()
          << Block->GetProductIndexText() << Block->GetTestInstructionIndexText()
          << Block->GetProductionDateText();
}

QString CZKHardwareComponent::ReadImageFileName() const
{
    return Name + QStringLiteral("Read_") + Name + QLatin1Char('_') +
           Block->GetSerialNumberText().left(SerialNumberInFileName) + QStringLiteral(".bin");
}

bool CZKHardwareComponent::SaveImage(QString fileName, QVector<uchar> image)
{
    QFile file(GetEepromDirectory() + fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        return false;
    }
    return file.write(reinterpret_cast<const char*>(image.constData()), image.size()) ==
           image.size();
}
