#pragma once

#include "DocPtr.h"

#include <QList>
#include <QMap>
#include <QSet>
#include <QString>
#include <QUuid>

/// Per-currency sums over the ready documents of a batch.
struct CurrencyTotals {
    QString currency; ///< upper-case code as extracted, or "—" for documents without one
    double subtotal = 0.0;
    double tax = 0.0;
    double total = 0.0;
    double approvedTotal = 0.0; ///< the totals of approved documents only

    bool operator==(const CurrencyTotals &) const = default;
};

/// Views derived from the documents of a batch, recomputed on every call. Only documents whose status
/// is ready count; the rest are ignored.
namespace BatchSummary {

/// Ids of likely duplicates: ready documents sharing vendor and number (lower-cased, trimmed, both
/// non-empty) and total (parsed, compared to the cent). Every member of such a group is included.
QSet<QUuid> duplicateIDs(const QList<DocPtr> &docs);

/// Sums of subtotal, tax and total per currency (trimmed, upper-cased; "—" when empty), sorted by
/// currency text. Unparseable amounts count as 0.
QList<CurrencyTotals> currencyTotals(const QList<DocPtr> &docs);

/// Ids of ready documents with at least one doubt about their amounts (Doubts::of).
QSet<QUuid> flaggedIDs(const QList<DocPtr> &docs);

/// How many flagged ready documents each currency of currencyTotals has; currencies without any are
/// left out.
QMap<QString, qsizetype> flaggedPerCurrency(const QList<DocPtr> &docs);

} // namespace BatchSummary
