#include "Amounts.h"

#include "Patterns.h"
#include "model/Graphemes.h"
#include "model/Money.h"

#include <cmath>

namespace Extractor {

namespace {

// A bare number ending a row ("Total  12"), read where the row holds no amount.
const Regex &trailingInteger()
{
    static const Regex rx(QStringLiteral(R"((?<![\d.,])\d{1,7}\s*$)"));
    return rx;
}

// A number followed by a percent sign is a rate, not an amount ("zzgl. 19,00% MwSt.").
bool isRate(const QString &text, qsizetype end)
{
    while (end < text.size() && text[end] == u' ')
        ++end;
    return end < text.size() && (text[end] == u'%' || text[end] == QChar(0xFF05));
}

} // namespace

QList<Amount> amountCandidates(const QString &text, const RuleFeatures &features)
{
    QList<Amount> amounts;
    if (!Patterns::hasDigit(text)) // every amount has one
        return amounts;
    for (const Regex::Match &m : Patterns::shared().amount(features).matchAll(text)) {
        if (features.ratesAreNoAmounts && isRate(text, m.range().end()))
            continue;
        QString matched = m.captured(text);
        if (features.blankThousands) // blanks between groups of digits ("1 234,56")
            matched.remove(u' ').remove(QChar(0xA0)).remove(QChar(0x202F));
        const auto value = Money::parse(matched);
        if (!value)
            continue;
        // A match may begin with the blank before its digits ("Subtotal  90.00"); the range starts at the
        // amount itself, so its box outlines the amount rather than the end of the label before it.
        TextRange range = m.range();
        if (range.length > 0 && text[range.start].isSpace()) {
            ++range.start;
            --range.length;
        }
        amounts.append(Amount{*value, range});
    }
    return amounts;
}

Scan scanRows(QList<Row> rows, const RuleFeatures &features)
{
    Scan scan;
    scan.features = features;
    scan.amounts.reserve(rows.size());
    scan.headerLike.reserve(rows.size());
    for (const Row &row : rows) {
        scan.amounts.append(amountCandidates(row.text, features));
        scan.headerLike.append(Patterns::isHeaderLike(row.text, features));
    }
    scan.rows = std::move(rows);
    return scan;
}

std::optional<NearAmount> amountNear(const Scan &scan, qsizetype index)
{
    const Row &row = scan.rows[index];
    const QList<Amount> &own = scan.amounts[index];
    if (!own.isEmpty())
        return NearAmount{own.last().value, row.box(own.last().range), false};

    if (const auto m = trailingInteger().match(row.text)) {
        const QString matched = m->captured(row.text);
        const auto value = Money::parse(matched);
        if (value && graphemeCount(row.text.trimmed()) >= graphemeCount(matched.trimmed()) + 3)
            return NearAmount{*value, row.box(m->range()), false};
    }

    if (graphemeCount(row.text.trimmed()) > 27)
        return std::nullopt;
    if (index + 1 >= scan.rows.size() || scan.rows[index + 1].page != row.page)
        return std::nullopt;
    const QList<Amount> &next = scan.amounts[index + 1];
    if (next.isEmpty())
        return std::nullopt;
    return NearAmount{next.first().value, scan.rows[index + 1].box(next.first().range), true};
}

bool isColumnLabelRow(const Scan &scan, qsizetype index)
{
    return scan.features.columnLabels && scan.amounts[index].isEmpty() && scan.rows[index].lines.size() > 1 &&
           !scan.headerLike[index];
}

std::optional<NearAmount> amountUnder(const Scan &scan, qsizetype row, const TextLine &label)
{
    const QRectF &l = label.rect;
    const double left = l.left() - l.width() * 0.5;
    const double right = l.right() + l.width() * 0.5;
    std::optional<NearAmount> best;
    double bestDistance = 0;
    for (const Amount &amount : scan.amounts[row]) {
        const PageBox box = scan.rows[row].box(amount.range);
        if (box.rect.right() <= left || box.rect.left() >= right)
            continue;
        const double distance = std::abs(box.rect.center().x() - l.center().x());
        if (!best || distance < bestDistance) {
            best = NearAmount{amount.value, box, true};
            bestDistance = distance;
        }
    }
    return best;
}

std::optional<NearAmount> amountBelow(const Scan &scan, qsizetype index, const TextLine &label)
{
    const QRectF &l = label.rect;
    for (qsizetype j = index + 1; j < scan.rows.size() && j <= index + 3; ++j) {
        const Row &row = scan.rows[j];
        if (row.page != scan.rows[index].page || row.rect.top() - l.bottom() > 4 * l.height())
            break;
        if (const auto best = amountUnder(scan, j, label))
            return best;
    }
    return std::nullopt;
}

} // namespace Extractor
