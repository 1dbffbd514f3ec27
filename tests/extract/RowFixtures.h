#pragma once

#include "model/Row.h"

#include <QStringList>
#include <ostream>

// Readable QString values in assertion failures.
inline void PrintTo(const QString &text, std::ostream *os)
{
    *os << '"' << text.toStdString() << '"';
}

// Rows for finder tests: one member line per row, stacked down the page 0.05 apart, each line as wide
// as its text at 0.01 per character so that boxes are easy to predict.
namespace RowFixtures {

inline TextLine lineOf(const QString &text, double x, double y, int page = 0, double height = 0.02)
{
    return TextLine{text, QRectF(x, y, 0.01 * double(std::max<qsizetype>(text.size(), 1)), height), page};
}

inline QList<Row> rowsOf(const QStringList &texts, int page = 0)
{
    QList<Row> rows;
    for (qsizetype i = 0; i < texts.size(); ++i)
        rows.append(Row(page, {lineOf(texts[i], 0.1, 0.05 + 0.05 * double(i), page)}));
    return rows;
}

} // namespace RowFixtures
