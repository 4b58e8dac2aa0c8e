#include "cli/TextTable.h"

#include <algorithm>

namespace hueshelf::cli {

TextTable::TextTable(QString indent, int gap) : m_indent(std::move(indent)), m_gap(gap) {}

void TextTable::addRow(const QStringList& cells) {
    m_rows << cells;
}

QString TextTable::render() const {
    QList<qsizetype> widths;
    for (const QStringList& row : m_rows) {
        for (qsizetype column = 0; column < row.size(); ++column) {
            if (widths.size() <= column)
                widths << 0;
            widths[column] = std::max(widths[column], row.at(column).size());
        }
    }

    QString text;
    for (const QStringList& row : m_rows) {
        QString line = m_indent;
        for (qsizetype column = 0; column < row.size(); ++column) {
            line += row.at(column);
            if (column + 1 < row.size())
                line += QString(widths[column] - row.at(column).size() + m_gap, u' ');
        }
        while (line.endsWith(u' '))
            line.chop(1);
        text += line + u'\n';
    }
    return text;
}

} // namespace hueshelf::cli
