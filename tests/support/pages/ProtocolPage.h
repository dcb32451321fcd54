// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <QStringList>
#include <QVector>

/// A fenced block marked `wire`: one command and what the unit answers to it.
struct sWIRE_EXAMPLE
{
    /// What stands behind the mark: the command, and a name where it has several examples.
    QString name;
    /// The heading above it, without backticks.
    QString section;
    QByteArray request;
    /// Empty where there is no answer.
    QByteArray answer;
};

/// A table of the page, cells without backticks.
struct sPAGE_TABLE
{
    QString section;
    QStringList header;
    QVector<QStringList> rows;

    /// The rows' cells of that column.
    QStringList Column(int column) const;
    /// The row that begins with that cell; empty when there is none.
    QStringList Row(const QString& key) const;
};

/// The description of the wire protocol, read into what a program can check.
class ProtocolPage
{
public:
    /// A file that cannot be read is an error of the page.
    explicit ProtocolPage(const QString& path);

    /// The lines that are not written as the page says it writes its examples; empty when all are.
    const QStringList& Errors() const { return errors; }
    /// The headings of the third level, in order and without backticks.
    const QStringList& Commands() const { return commands; }
    const QVector<sWIRE_EXAMPLE>& Examples() const { return examples; }
    /// Examples and tables below that heading, in order.
    QVector<sWIRE_EXAMPLE> ExamplesOf(const QString& section) const;
    QVector<sPAGE_TABLE> TablesOf(const QString& section) const;
    /// Empty fields when the page has no example of that name.
    sWIRE_EXAMPLE Example(const QString& name) const;

private:
    void TakeLine(const QString& line);
    void TakeHeading(const QString& line);
    void TakeTableLine(const QString& line);
    void TakeExampleLine(const QString& line);
    bool AppendBytes(const QString& line, QByteArray& bytes) const;

    QString section;
    bool insideExample = false;
    bool insideTable = false;
    QStringList errors;
    QStringList commands;
    QVector<sWIRE_EXAMPLE> examples;
    QVector<sPAGE_TABLE> tables;
};
