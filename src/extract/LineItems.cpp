#include "LineItems.h"

#include "Patterns.h"
#include "model/Money.h"

#include <cmath>

namespace Extractor {

namespace {

const Regex &summaryRow()
{
    static const Regex rx(QStringLiteral(
        R"(^\W*(sub\s*-?\s*total|total|grand\s*total|balance|amount\s*due|tax|vat|gst|hst|discount|shipping|)"
        R"(freight|payment|paid|change|cash|visa|mastercard|amex|card|tip|thank|due|net\s*(30|60|15))\b)"));
    return rx;
}

const Regex &qtyTail()
{
    static const Regex rx(QStringLiteral(
        R"((?:^|\s)(\d+(?:[.,]\d+)?)\s*(?:x|×|@|pcs|ea|each|hrs?|hours?|units?)?\s*[$€£¥]?\s*$)"));
    return rx;
}

const Regex &leadQty()
{
    static const Regex rx(QStringLiteral(R"(^\s*(\d{1,3})\s*(?:x|×)?\s+(?=[A-Za-z]))"));
    return rx;
}

const Regex &leadIdx()
{
    static const Regex rx(QStringLiteral(R"(^\s*\d{1,3}[.)]?\s+(?=[A-Za-z]))"));
    return rx;
}

const Regex &metaWords()
{
    static const Regex rx(QStringLiteral(
        R"(\b(date|invoice|phone|tel|fax|table|server|cashier|card|ref|www|account|acct|page|balance)\b|@)"));
    return rx;
}

const Regex &whitespaceRun()
{
    static const Regex rx(QStringLiteral(R"(\s{2,})"));
    return rx;
}

QString collapseWhitespace(const QString &text)
{
    QString out;
    qsizetype from = 0;
    for (const Regex::Match &m : whitespaceRun().matchAll(text)) {
        out += QStringView(text).mid(from, m.range().loc - from);
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

bool isSummary(const Row &row)
{
    using W = QLatin1StringView;
    // Every summary label holds one of these words (member lines are parts of the row text).
    if (!Patterns::mayContain(
            row.text, {W("total"),  W("balance"),  W("amount"),   W("tax"),        W("vat"),  W("gst"),
                       W("hst"),    W("discount"), W("shipping"), W("freight"),    W("pay"),  W("paid"),
                       W("change"), W("cash"),     W("visa"),     W("mastercard"), W("amex"), W("card"),
                       W("tip"),    W("thank"),    W("due"),      W("net")}))
        return false;
    if (summaryRow().contains(row.text))
        return true;
    return std::any_of(row.lines.begin(), row.lines.end(),
                       [](const TextLine &line) { return summaryRow().contains(line.text); });
}

} // namespace

std::optional<LineItem> parseItem(const Row &row, const QList<Amount> &amounts, bool hasHeader)
{
    if (amounts.isEmpty())
        return std::nullopt;
    const double A = amounts.last().value;
    const QString head = row.text.left(amounts.first().range.loc).trimmed();

    std::optional<double> quantity;
    QString description = head;
    bool quantityFromTail = false;
    if (const auto m = qtyTail().match(head)) {
        const QString rest = head.left(m->range().loc).trimmed();
        const auto value = Money::parse(m->captured(head, 1));
        if (hasLetter(rest) && value && *value > 0 && *value < 100000) {
            quantity = value;
            description = rest;
            quantityFromTail = true;
        }
    }
    if (!quantity && !hasHeader) {
        if (const auto m = leadQty().match(head)) {
            quantity = m->captured(head, 1).toDouble();
            description = head.mid(m->range().end()).trimmed();
        }
    }
    // Without a header only a trailing quantity allows dropping a leading index ("1. Widget" keeps "1.").
    if (hasHeader || quantityFromTail) {
        if (const auto m = leadIdx().match(description))
            description = description.mid(m->range().end()).trimmed();
    }

    description = trimDescription(description);
    if (letterCount(description) < 2)
        return std::nullopt;
    if (!hasHeader && metaWords().contains(description))
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
    item.quantity = Money::fmtQty(q);
    item.unitPrice = Money::fixed2(p);
    item.amount = Money::fixed2(A);
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
        if (isSummary(row)) {
            if (hasHeader)
                break;
            continue;
        }
        if (hasHeader && scan.amounts[i].isEmpty() && scan.headerLike[i])
            continue;
        if (auto item = parseItem(row, scan.amounts[i], hasHeader)) {
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
