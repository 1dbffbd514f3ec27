#pragma once

#include "TextLine.h"

#include <QList>
#include <QString>

/// A range of UTF-16 code units in a text.
struct TextRange {
    qsizetype start = 0;
    qsizetype length = 0;

    qsizetype end() const { return start + length; }
    bool operator==(const TextRange &) const = default;
};

/// One visual line of text on one page: member lines left to right, joined by two spaces.
struct Row {
    int page = 0;
    QList<TextLine> lines;    ///< never empty; ascending left edge
    QString text;             ///< member texts joined with "  "
    QList<qsizetype> offsets; ///< UTF-16 start of each member line in `text`
    QRectF rect;              ///< union of the member rects

    /// Builds a row: sorts the lines stably by left edge, joins them and unites their rects.
    Row(int page, QList<TextLine> lines);
    Row() = default;

    /// The box of a range of `text`, estimated proportionally inside the member line where it starts.
    /// A range running past that line is clipped to it; the width is at least 0.004.
    PageBox box(TextRange range) const;

    bool operator==(const Row &) const = default;
};
