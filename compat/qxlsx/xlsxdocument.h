// SPDX-License-Identifier: MIT

#pragma once

#include <QObject>
#include <QStringList>

#include <memory>

namespace QXlsx {

class AbstractSheet;
class Workbook;

/// An Office Open XML workbook, read from its file when the object is made.
///
/// Files are not trusted. A file that unpacks to more than 64 MiB is not loaded, nor one beyond the
/// other bounds, which no real workbook comes near. The memory needed follows what the file holds,
/// whatever places its cells claim.
class Document : public QObject
{
    Q_OBJECT

public:
    Document(const QString& xlsxName, QObject* parent = nullptr);
    ~Document() override;

    /// False when the file cannot be read, is no zip, is cut short, lacks a part of a workbook, or
    /// has one that is not well-formed. There are no sheets then.
    bool isLoadPackage() const;

    /// In the order of the tabs.
    QStringList sheetNames() const;
    /// Null for a name that no sheet has. The document owns its sheets.
    AbstractSheet* sheet(const QString& sheetName) const;

private:
    const std::unique_ptr<Workbook> workbook; ///< null when the file was not loaded
};

} // namespace QXlsx
