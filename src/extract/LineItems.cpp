#include "LineItems.h"

#include "Keywords.h"
#include "Patterns.h"
#include "Vocabulary.h"
#include "model/Money.h"

#include <cmath>

namespace Extractor {

namespace {

struct ItemPatterns {
    RulePattern summaryRow{QStringLiteral(
        R"(^\W*(sub\s*-?\s*total|total|grand\s*total|balance|amount\s*due|tax|vat|gst|hst|discount|shipping|)"
        R"(freight|payment|paid|change|cash|visa|mastercard|amex|card|tip|thank|due|net\s*(30|60|15){summary})\b)")};
    // A quantity ending the text before the amounts ("Widget 2 pcs").
    RulePattern quantityTail{QStringLiteral(
        R"((?:^|\s)(\d+(?:[.,]\d+)?)\s*(?:x|×|@|pcs|ea|each|hrs?|hours?|units?{units})?\s*[$€£¥]?\s*$)")};
    // A unit word in front of a description ("Stk. Beratung"), left over where the quantity came first.
    RulePattern unitHead{QStringLiteral(R"(^\s*(?:(?!){units})\s*)")};
    Regex indexOnly{QStringLiteral(R"(^\d{1,3}(?:[.)]\d{0,2})?$)")};
    // A quantity starting the text before the amounts ("3 x Coffee").
    RulePattern quantityHead{QStringLiteral(R"(^\s*(\d{1,3})\s*(?:x|×)?\s+(?=[A-Za-z]))"),
                             QStringLiteral(R"(^\s*(\d{1,3})\s*(?:x|×)?\s+(?=\p{L}))")};
    Regex indexHead{QStringLiteral(R"(^\s*\d{1,3}[.)]?\s+(?=[A-Za-z]))")};
    Regex metaWords{QStringLiteral(
        R"(\b(date|invoice|phone|tel|fax|table|server|cashier|card|ref|www|account|acct|page|balance)\b|@)")};
    Regex whitespaceRun{QStringLiteral(R"(\s{2,})")};
};

const ItemPatterns &patterns()
{
    return Patterns::compiledOnce<ItemPatterns>();
}

QString collapseWhitespace(const QString &text)
{
    QString out;
    qsizetype from = 0;
    for (const Regex::Match &m : patterns().whitespaceRun.matchAll(text)) {
        out += QStringView(text).mid(from, m.range().start - from);
        out += u' ';
        from = m.range().end();
    }
    out += QStringView(text).mid(from);
    return out;
}

bool hasLetter(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
}

qsizetype letterCount(const QString &text)
{
    return std::count_if(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
}

bool isTrimmedFromDescription(QChar c)
{
    return c == u' ' || c == u'x' || c == u'×' || c == u'@' || c == u'-' || c == u'–' || c == u':' ||
           c == u'$';
}

QString trimDescription(const QString &text)
{
    qsizetype start = 0;
    qsizetype end = text.size();
    while (start < end && isTrimmedFromDescription(text[start]))
        ++start;
    while (end > start && isTrimmedFromDescription(text[end - 1]))
        --end;
    return collapseWhitespace(text.mid(start, end - start));
}

bool nearWhole(double v)
{
    return std::abs(v - std::round(v)) <= 0.01;
}

} // namespace

bool isSummaryRow(const Row &row, const RuleFeatures &features)
{
    // Member lines are parts of the row text, so the row's words tell for them too.
    if (!Keywords::may(row.text, Keywords::SummaryRow, features))
        return false;
    const Regex &summary = patterns().summaryRow(features);
    if (summary.contains(row.text))
        return true;
    // A subtotal in any wording ("Net amount", "Nettobetrag") may end the table too.
    if (features.subtotalEndsTable && Patterns::shared().subtotalLabel(features).contains(row.text))
        return true;
    return std::any_of(row.lines.begin(), row.lines.end(),
                       [&summary](const TextLine &line) { return summary.contains(line.text); });
}

namespace {

// A quantity printed as the row's first amount, before the description
// ("1,00  Beratung  120,00", "2  3,50  Std.  Montage  45,00  157,50"): it is taken out of the
// candidates and the text up to the next amount becomes the head.
std::optional<double> leadingQuantity(const Row &row, QList<Amount> &amounts, QString &head,
                                      const RuleFeatures &features)
{
    if (!features.leadingQuantity || amounts.size() < 2)
        return std::nullopt;
    const QString before = row.text.left(amounts[0].range.start).trimmed();
    const qsizetype afterFirst = amounts[0].range.end();
    const QString between = row.text.mid(afterFirst, amounts[1].range.start - afterFirst);
    const double value = amounts[0].value;
    if ((!before.isEmpty() && !patterns().indexOnly.contains(before)) || letterCount(between) < 2 ||
        value <= 0 || value >= 100000)
        return std::nullopt;
    amounts.removeFirst();
    head = between.trimmed();
    if (const auto unit = patterns().unitHead(features).match(head))
        head = head.mid(unit->range().end()).trimmed();
    return value;
}

} // namespace

std::optional<LineItem> parseItem(const Row &row, QList<Amount> amounts, bool hasHeader,
                                  const RuleFeatures &features)
{
    if (amounts.isEmpty())
        return std::nullopt;
    const double A = amounts.last().value;
    QString head = row.text.left(amounts.first().range.start).trimmed();

    // A "key: value" line ("Bruttopreis: 127,60") under an item is a detail of it, not another item.
    if (features.itemDetailLines && head.endsWith(u':'))
        return std::nullopt;
    std::optional<double> quantity = leadingQuantity(row, amounts, head, features);
    QString description = head;
    bool quantityFromTail = false;
    if (const auto m = quantity ? std::nullopt : patterns().quantityTail(features).match(head)) {
        const QString rest = head.left(m->range().start).trimmed();
        const auto value = Money::parse(m->captured(head, 1));
        if (hasLetter(rest) && value && *value > 0 && *value < 100000) {
            quantity = value;
            description = rest;
            quantityFromTail = true;
        }
    }
    if (!quantity && !hasHeader) {
        if (const auto m = patterns().quantityHead(features).match(head)) {
            quantity = m->captured(head, 1).toDouble();
            description = head.mid(m->range().end()).trimmed();
        }
    }
    // Without a header only a trailing quantity allows dropping a leading index ("1. Widget" keeps "1.").
    if (hasHeader || quantityFromTail) {
        if (const auto m = patterns().indexHead.match(description))
            description = description.mid(m->range().end()).trimmed();
    }

    description = trimDescription(description);
    if (letterCount(description) < 2)
        return std::nullopt;
    if (!hasHeader && patterns().metaWords.contains(description))
        return std::nullopt;

    const qsizetype n = amounts.size();
    double q = 1;
    double p = A;
    if (n == 1) {
        if (quantity) {
            q = *quantity;
            p = q != 0 ? A / q : A;
        }
    } else {
        p = amounts[n - 2].value;
        if (quantity) {
            q = *quantity;
        } else if (p != 0) {
            const double ratio = A / p;
            if (nearWhole(ratio) || nearWhole(2 * ratio))
                q = ratio;
        }
    }
    const bool consistent = std::abs(p * q - A) <= std::max(std::abs(A) * 0.01, 0.02);

    double confidence = 0;
    if (quantity && n >= 2)
        confidence = consistent ? 0.92 : 0.55;
    else if (quantity || n >= 2)
        confidence = !consistent ? 0.5 : (hasHeader ? 0.78 : 0.68);
    else
        confidence = hasHeader ? 0.7 : 0.6;

    LineItem item;
    item.description = description;
    item.quantity = Money::formatQuantity(q);
    item.unitPrice = Money::twoDecimals(p);
    item.amount = Money::twoDecimals(A);
    item.confidence = confidence;
    item.box = PageBox{row.page, row.rect};
    return item;
}

QList<LineItem> findLineItems(const Scan &scan)
{
    QList<LineItem> items;
    const QList<Row> &rows = scan.rows;
    qsizetype start = 0;
    bool hasHeader = false;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        if (scan.headerLike[i] && scan.amounts[i].isEmpty()) {
            hasHeader = true;
            start = i + 1;
            break;
        }
    }

    qsizetype lastItemRow = -1;
    for (qsizetype i = start; i < rows.size(); ++i) {
        const Row &row = rows[i];
        if (isSummaryRow(row, scan.features)) {
            // A header's second line ("MwSt." under "Preis") may pass: a summary row
            // ends the table once it carries an amount or items were found.
            const bool ends =
                !scan.features.headerSecondLine || !items.isEmpty() || !scan.amounts[i].isEmpty();
            if (hasHeader && ends)
                break;
            continue;
        }
        if (hasHeader && scan.amounts[i].isEmpty() && scan.headerLike[i])
            continue;
        if (auto item = parseItem(row, scan.amounts[i], hasHeader, scan.features)) {
            items.append(std::move(*item));
            lastItemRow = i;
            continue;
        }
        // A wrapped description line directly under its item.
        if (hasHeader && !items.isEmpty() && lastItemRow == i - 1 && scan.amounts[i].isEmpty() &&
            row.page == rows[lastItemRow].page && hasLetter(row.text) &&
            row.rect.top() - rows[lastItemRow].rect.bottom() < rows[lastItemRow].rect.height()) {
            items.last().description += u' ' + collapseWhitespace(row.text);
            lastItemRow = i;
        }
    }
    return items;
}

} // namespace Extractor
