// SPDX-License-Identifier: MIT

#include "tests/support/pages/ProtocolPage.h"

#include <QFile>
#include <QRegularExpression>
#include <QTextStream>

#include <algorithm>
#include <iterator>

namespace {

const QString Fence = "```";
const QString ExampleFence = "```wire ";

QString WithoutBackticks(QString text)
{
    return text.remove('`').trimmed();
}

QStringList CellsOf(const QString& line)
{
    QStringList cells = WithoutBackticks(line).split('|');
    cells.removeFirst();
    cells.removeLast();
    std::transform(cells.begin(), cells.end(), cells.begin(),
        [](const QString& cell) { return cell.trimmed(); });
    return cells;
}

template<typename T>
QVector<T> Below(const QString& section, const QVector<T>& all)
{
    QVector<T> found;
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(found),
        [&section](const T& one) { return one.section == section; });
    return found;
}

} // namespace

QStringList sPAGE_TABLE::Column(int column) const
{
    QStringList cells;
    for (const QStringList& row : rows) {
        cells.append(row.value(column));
    }
    return cells;
}

QStringList sPAGE_TABLE::Row(const QString& key) const
{
    return rows.value(Column(0).indexOf(key));
}

ProtocolPage::ProtocolPage(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        errors.append(path + " cannot be read");
        return;
    }
    QTextStream lines(&file);
    lines.setCodec("UTF-8");
    while (!lines.atEnd()) {
        TakeLine(lines.readLine());
    }
    if (insideExample) {
        errors.append("the last example has no end");
    }
}

QVector<sWIRE_EXAMPLE> ProtocolPage::ExamplesOf(const QString& section) const
{
    return Below(section, examples);
}

QVector<sPAGE_TABLE> ProtocolPage::TablesOf(const QString& section) const
{
    return Below(section, tables);
}

sWIRE_EXAMPLE ProtocolPage::Example(const QString& name) const
{
    const auto found = std::find_if(examples.cbegin(), examples.cend(),
        [&name](const sWIRE_EXAMPLE& example) { return example.name == name; });
    return found == examples.cend() ? sWIRE_EXAMPLE() : *found;
}

void ProtocolPage::TakeLine(const QString& line)
{
    if (insideExample) {
        TakeExampleLine(line);
    } else if (line.startsWith(ExampleFence)) {
        examples.append({line.mid(ExampleFence.size()), section, {}, {}});
        insideExample = true;
    } else if (line.startsWith(Fence)) {
        errors.append(line);
    } else if (line.startsWith('#')) {
        TakeHeading(line);
    } else if (line.startsWith('|')) {
        TakeTableLine(line);
        return;
    }
    insideTable = false;
}

void ProtocolPage::TakeHeading(const QString& line)
{
    section = WithoutBackticks(line.section(' ', 1));
    if (line.startsWith("### ")) {
        commands.append(section);
    }
}

void ProtocolPage::TakeTableLine(const QString& line)
{
    if (!insideTable) {
        tables.append({section, CellsOf(line), {}});
        insideTable = true;
    } else if (!line.startsWith("|---")) {
        tables.last().rows.append(CellsOf(line));
    }
}

// A request stands whole before its answer.
void ProtocolPage::TakeExampleLine(const QString& line)
{
    if (line == Fence) {
        insideExample = false;
        return;
    }
    sWIRE_EXAMPLE& example = examples.last();
    const bool isRequest = line.startsWith("> ") && example.answer.isEmpty();
    const bool isAnswer = line.startsWith("< ") && !example.request.isEmpty();
    if (!(isRequest && AppendBytes(line, example.request)) &&
        !(isAnswer && AppendBytes(line, example.answer))) {
        errors.append(line);
    }
}

bool ProtocolPage::AppendBytes(const QString& line, QByteArray& bytes) const
{
    static const QRegularExpression Byte("^[0-9A-F]{2}$");
    static const QRegularExpression Times("^x([1-9][0-9]*)$");
    const QStringList words = line.section(';', 0, 0).mid(2).split(' ', Qt::SkipEmptyParts);
    QByteArray found;
    bool repeatable = false;
    for (const QString& word : words) {
        const QRegularExpressionMatch times = Times.match(word);
        if (Byte.match(word).hasMatch()) {
            found.append(static_cast<char>(word.toUInt(nullptr, 16)));
            repeatable = true;
        } else if (repeatable && times.hasMatch()) {
            found.append(QByteArray(times.captured(1).toInt() - 1, found.back()));
            repeatable = false;
        } else {
            return false;
        }
    }
    bytes.append(found);
    return !found.isEmpty();
}
