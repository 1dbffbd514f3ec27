#include "BatchSummary.h"

#include "model/Doubts.h"
#include "model/Money.h"

#include <QHash>
#include <QMap>

namespace {

QString currencyOf(const DocItem &doc)
{
    const QString currency = doc.value(QStringLiteral("currency")).trimmed().toUpper();
    return currency.isEmpty() ? QStringLiteral("—") : currency;
}

bool isFlagged(const DocItem &doc)
{
    return doc.status().kind() == DocStatus::Ready && !Doubts::of(doc.fields(), doc.items()).isEmpty();
}

} // namespace

namespace BatchSummary {

QSet<QUuid> duplicateIDs(const QList<DocPtr> &docs)
{
    QHash<QString, QList<QUuid>> groups;
    for (const DocPtr &doc : docs) {
        if (doc->status().kind() != DocStatus::Ready)
            continue;
        const QString vendor = doc->value(QStringLiteral("vendor")).toLower().trimmed();
        const QString number = doc->value(QStringLiteral("number")).toLower().trimmed();
        if (vendor.isEmpty() || number.isEmpty())
            continue;
        const auto total = Money::parse(doc->value(QStringLiteral("total")));
        if (!total)
            continue;
        groups[vendor + u'|' + number + u'|' + Money::twoDecimals(*total)].append(doc->id());
    }
    QSet<QUuid> ids;
    for (const QList<QUuid> &group : std::as_const(groups)) {
        if (group.size() >= 2)
            ids.unite(QSet<QUuid>(group.begin(), group.end()));
    }
    return ids;
}

QList<CurrencyTotals> currencyTotals(const QList<DocPtr> &docs)
{
    // QMap keeps its keys in QString order, which is code-unit order: "—" comes after the letters.
    QMap<QString, CurrencyTotals> byCurrency;
    for (const DocPtr &doc : docs) {
        if (doc->status().kind() != DocStatus::Ready)
            continue;
        const QString currency = currencyOf(*doc);
        CurrencyTotals &entry = byCurrency[currency];
        entry.currency = currency;
        auto amount = [&](const char *key) {
            return Money::parse(doc->value(QLatin1String(key))).value_or(0.0);
        };
        const double total = amount("total");
        entry.subtotal += amount("subtotal");
        entry.tax += amount("tax");
        entry.total += total;
        if (doc->approved())
            entry.approvedTotal += total;
    }
    return byCurrency.values();
}

QSet<QUuid> flaggedIDs(const QList<DocPtr> &docs)
{
    QSet<QUuid> ids;
    for (const DocPtr &doc : docs) {
        if (isFlagged(*doc))
            ids.insert(doc->id());
    }
    return ids;
}

QMap<QString, qsizetype> flaggedPerCurrency(const QList<DocPtr> &docs)
{
    QMap<QString, qsizetype> counts;
    for (const DocPtr &doc : docs) {
        if (isFlagged(*doc))
            ++counts[currencyOf(*doc)];
    }
    return counts;
}

} // namespace BatchSummary
