#include "Currency.h"

#include "Regex.h"
#include "Rows.h"

#include <QHash>
#include <array>

namespace Extractor {

namespace {

// Upper case only: "usd" in running text is more often a word fragment than a currency.
const Regex &codeRx()
{
    static const Regex rx(
        QStringLiteral(R"(\b(USD|EUR|GBP|CAD|AUD|NZD|JPY|CHF|INR|CNY|MXN|SEK|NOK|DKK|SGD|HKD|BRL|ZAR)\b)"),
        false);
    return rx;
}

struct Symbol {
    QChar symbol;
    const char *code;
    double confidence;
};

// Order of precedence: on equal counts the earlier symbol wins.
constexpr std::array<Symbol, 4> symbols{{
    {QChar(0x20AC), "EUR", 0.75},
    {QChar(0x00A3), "GBP", 0.75},
    {QChar(0x00A5), "JPY", 0.75},
    {QChar(u'$'), "USD", 0.6},
}};

// The box of the first literal occurrence of `token` in the rows.
std::optional<PageBox> firstBox(const QString &token, const QList<Row> &rows)
{
    for (const Row &row : rows) {
        const qsizetype at = row.text.indexOf(token);
        if (at >= 0)
            return row.box(TextRange{at, token.size()});
    }
    return std::nullopt;
}

} // namespace

Field findCurrency(const QList<Row> &rows, RuleSet /*rules*/)
{
    Field field = emptyField(QStringLiteral("currency"), QStringLiteral("Currency"));
    const QString doc = documentText(rows);

    // Codes, most frequent first; equal counts go to the code seen first in the document.
    QList<QString> order;
    QHash<QString, int> counts;
    for (const Regex::Match &m : codeRx().matchAll(doc)) {
        const QString code = m.captured(doc, 1);
        if (!counts.contains(code))
            order.append(code);
        ++counts[code];
    }
    if (!order.isEmpty()) {
        QString best = order.first();
        for (const QString &code : order) {
            if (counts.value(code) > counts.value(best))
                best = code;
        }
        field.value = best;
        field.confidence = 0.9;
        field.box = firstBox(best, rows);
        return field;
    }

    const Symbol *chosen = nullptr;
    qsizetype chosenCount = 0;
    for (const Symbol &s : symbols) {
        const qsizetype count = doc.count(s.symbol);
        if (count > 0 && (!chosen || count > chosenCount)) {
            chosen = &s;
            chosenCount = count;
        }
    }
    if (chosen) {
        field.value = QString::fromLatin1(chosen->code);
        field.confidence = chosen->confidence;
        field.box = firstBox(QString(chosen->symbol), rows);
    }
    return field;
}

} // namespace Extractor
