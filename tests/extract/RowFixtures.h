#pragma once

#include "extract/Amounts.h"
#include "model/Row.h"

#include <QStringList>

// Small builders for extractor tests: rows laid out top to bottom, member lines left to right.
namespace RowFixtures {

inline TextLine line(const QString &text, double x, double y, double w = 0.1, double h = 0.02, int page = 0)
{
    return TextLine{text, QRectF(x, y, w, h), page};
}

/// A row whose member lines are `cells`, 0.2 apart horizontally, at height y.
inline Row row(const QStringList &cells, double y, int page = 0, double h = 0.02)
{
    QList<TextLine> lines;
    for (qsizetype i = 0; i < cells.size(); ++i)
        lines.append(line(cells[i], 0.05 + 0.2 * double(i), y, 0.15, h, page));
    return Row(page, lines);
}

/// Rows from a list of cell lists, 0.03 apart vertically, scanned for amounts.
inline Extractor::Scan scan(const QList<QStringList> &table)
{
    QList<Row> rows;
    for (qsizetype i = 0; i < table.size(); ++i)
        rows.append(row(table[i], 0.1 + 0.03 * double(i)));
    return Extractor::scanRows(rows);
}

} // namespace RowFixtures
