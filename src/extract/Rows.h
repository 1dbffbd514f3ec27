#pragma once

#include "model/Row.h"

namespace Extractor {

/// Groups lines into geometric rows: pages ascending, then rows top to bottom. A line joins the current
/// row when its mid y lies within 0.55 × the smaller of its height and the row's first line's height
/// of the mean mid y of the row's lines.
QList<Row> buildRows(const QList<TextLine> &lines);

/// Reading order of lines on one page: top edge ascending, equal tops by left edge (exact comparisons).
inline bool topThenLeft(const TextLine &a, const TextLine &b)
{
    if (a.rect.top() != b.rect.top())
        return a.rect.top() < b.rect.top();
    return a.rect.left() < b.rect.left();
}

/// The whole document as one text: every row's text, in row order, separated by line feeds.
QString documentText(const QList<Row> &rows);

} // namespace Extractor
