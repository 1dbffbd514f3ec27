#pragma once

#include "model/Row.h"

namespace Extractor {

/// Groups lines into geometric rows: pages ascending, then rows top to bottom. A line joins the current
/// row when its mid y lies within 0.55 × the smaller of its height and the row's first line's height
/// of the mean mid y of the row's lines.
QList<Row> buildRows(const QList<TextLine> &lines);

} // namespace Extractor
