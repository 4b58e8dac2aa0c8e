#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace hueshelf::cli {

// Rows of text cells printed in aligned columns, for the output meant for people.
class TextTable {
public:
    explicit TextTable(QString indent = {}, int gap = 2);

    void addRow(const QStringList& cells);
    bool isEmpty() const { return m_rows.isEmpty(); }

    // Each row on its own line; every column but the last is padded to its widest cell, and
    // no line ends in blanks.
    QString render() const;

private:
    QString m_indent;
    int m_gap;
    QList<QStringList> m_rows;
};

} // namespace hueshelf::cli
