#pragma once

#include "Field.h"
#include "LineItem.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

/// A value that reads well but cannot be right given the document's other amounts.
struct Doubt {
    QString key;    ///< the field the doubt is shown on ("tax", "total" or "subtotal")
    QString reason; ///< one sentence for the user

    bool operator==(const Doubt &) const = default;
};

/// Consistency checks over a document's amounts. Amounts that do not parse (Money::parse) are never
/// doubted; differences of one cent or less are rounding, not doubt.
namespace Doubts {

/// The doubts about `fields` and `items`, in this order: a negative tax; a total below the subtotal;
/// subtotal + tax differing from the total; the items' amounts differing from the subtotal.
QList<Doubt> of(const QList<Field> &fields, const QList<LineItem> &items);

/// The sum of the item amounts that parse, or nothing when none does.
std::optional<double> itemsSum(const QList<LineItem> &items);

/// Whether two amounts are at most one cent apart, compared in whole cents so that 0.1 + 0.2 against
/// 0.3 is no difference.
bool withinACent(double a, double b);

/// The reasons of the doubts shown on field `key`.
QStringList reasonsFor(const QList<Doubt> &doubts, const QString &key);

} // namespace Doubts
