#pragma once

/// Whether the horizontal gap between two consecutive words of one line separates two columns.
/// Readers chain words of the same baseline into one line even across a page's columns (a letterhead
/// with the company name on the left and "INVOICE" on the right); word spacing is about a third of the
/// line height, so a gap of more than twice the line height marks a new column and thus a new line.
/// Both values in the same unit (points or pixels).
inline bool isColumnGap(double gap, double lineHeight)
{
    return lineHeight > 0 && gap > 2.0 * lineHeight;
}
