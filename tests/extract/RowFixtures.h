#pragma once

#include "extract/Amounts.h"
#include "extract/Extractor.h"
#include "extract/Rows.h"
#include "model/Row.h"

#include "support/TestSupport.h"

#include <QStringList>

// Small builders for extractor tests.
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

/// The lines of an invented page: rows of cells 0.04 apart, the cells of a row 0.2 apart.
inline QList<TextLine> invoice(const QList<QStringList> &table)
{
    QList<TextLine> lines;
    for (qsizetype r = 0; r < table.size(); ++r)
        lines.append(row(table[r], 0.05 + 0.04 * double(r)).lines);
    return lines;
}

/// The invented page's rows, scanned for amounts.
inline Extractor::Scan scan(const QList<QStringList> &table, RuleSet rules = RuleSet::Core)
{
    return Extractor::scanRows(Extractor::buildRows(invoice(table)), rules);
}

/// One line as wide as its text at 0.01 per character, so that boxes are easy to predict.
inline TextLine lineOf(const QString &text, double x, double y, int page = 0, double height = 0.02)
{
    return TextLine{text, QRectF(x, y, 0.01 * double(std::max<qsizetype>(text.size(), 1)), height), page};
}

/// One single-line row per text, stacked down the page 0.05 apart.
inline QList<Row> rowsOf(const QStringList &texts, int page = 0)
{
    QList<Row> rows;
    for (qsizetype i = 0; i < texts.size(); ++i)
        rows.append(Row(page, {lineOf(texts[i], 0.1, 0.05 + 0.05 * double(i), page)}));
    return rows;
}

/// The value of the field `key` in an extraction result, empty when it has none.
inline QString valueOf(const Extractor::Result &result, const char *key)
{
    for (const Field &f : result.fields) {
        if (f.key == QLatin1String(key))
            return f.value;
    }
    return {};
}

/// A money field holding `value`, at 0.8 unless empty.
inline Field money(const char *value)
{
    Field field;
    field.value = QString::fromLatin1(value);
    field.confidence = *value ? 0.8 : 0.0;
    return field;
}

/// Line items with these amounts and nothing else.
inline QList<LineItem> items(const QStringList &amounts)
{
    QList<LineItem> list(amounts.size());
    for (qsizetype i = 0; i < amounts.size(); ++i)
        list[i].amount = amounts[i];
    return list;
}

/// Each item as "quantity x description = amount", so that whole item lists compare at once.
inline QStringList itemTexts(const QList<LineItem> &items)
{
    QStringList texts;
    for (const LineItem &item : items)
        texts.append(item.quantity + " x " + item.description + " = " + item.amount);
    return texts;
}

} // namespace RowFixtures
