#pragma once

#include <QColor>
#include <QFont>

/// The few colours and fonts the views share, so that a tint means the same everywhere: green for
/// approved and confident, orange for doubtful, blue for edited and line items, red for failures.
namespace Theme {

QColor green();
QColor orange();
QColor blue();
QColor red();

/// What a badge or an outline says about a value: confident, in doubt, or edited / a line item.
enum class Tone { Green, Orange, Blue };
/// The colour of `tone`: the one place a tone becomes a colour.
QColor color(Tone tone);

/// The platform's accent (selection) colour: in-progress documents, the drop highlight.
QColor accent();
/// Text that matters less than its neighbours.
QColor secondaryText();

/// `color` with its alpha set to `opacity` (0…1).
QColor faded(const QColor &color, double opacity);

/// The application font scaled for captions (status lines, labels under amounts).
QFont caption();
/// A caption-sized font whose digits line up in columns, for amounts.
QFont amounts();
/// The application font enlarged by `factor`, optionally bold, for titles.
QFont title(double factor, bool bold = true);

} // namespace Theme
