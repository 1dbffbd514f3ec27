#include "Number.h"
#include "Patterns.h"

#include "Keywords.h"
#include "Regex.h"
#include "Vocabulary.h"

#include <algorithm>

namespace Extractor {

namespace {

struct NumberPatterns {
    // The separator class holds ":", "#", ".", "-" and an en dash. The full rules add the vocabularies'
    // labels and number words, a short code in brackets (after up to two words) before the number word
    // ("Rechnung (Kopie) Nr. 12", "Teilrechnung Bau (875) Nr. 210112")
    // and two separators ("No : # 123").
    RulePattern numberLabel{
        QStringLiteral(
            R"(\b(invoice|receipt|inv(?=[\s#.:])|bill|order|ref(?:erence)?|document|doc|confirmation|transaction|)"
            R"(ticket|form)\s*(?:(?:no|num|number|nr|id)\b\.?|#)?\s*[:#.\-)"
            "\u2013"
            R"(]?\s*([A-Z0-9][A-Z0-9\-/_.]{2,24}))"),
        QStringLiteral(
            R"((\b(?:invoice|receipt|inv(?=[\s#.:])|bill|order|ref(?:erence)?|document|doc|confirmation|)"
            R"(transaction|ticket|form){number.invoice}{number.order}{number.other})\s*(?:(?:\p{L}{2,20}\s+){0,2}\([^()]{1,12}\)\s*)?)"
            R"((?:(?:no|num|number|nr|id)\b\.?|#{number.word})?)"
            R"((?:\s*[:#.\-)"
            "\u2013"
            R"(]){0,2}\s*([A-Z0-9][A-Z0-9\-/_.]{2,24}))")};
    // Which kind of document a label of the vocabularies names, for its confidence.
    RulePattern invoiceWord{QStringLiteral(R"(^(?:(?!){number.invoice})$)")};
    RulePattern orderWord{QStringLiteral(R"(^(?:(?!){number.order})$)")};
    Regex prefixedNumber{QStringLiteral(R"(\b((?:INV|RCPT|REC|BILL|PO|SO)[-_/]?\d{3,}[A-Z0-9\-]*)\b)"),
                         false};
    RulePattern stackedLabel{QStringLiteral(
        R"((?:invoice|receipt|bill|order{number.invoice}{number.order})\s*(?:no|num|number|nr|id|#{number.word})\.?\s*:?\s*$)")};
    // A line that is only a number mark and a number ("N° FA-2026-0001" under a "FACTURE" heading): the
    // full rules offer it below the green threshold, as nothing names what is numbered.
    Regex markedNumber{
        QStringLiteral(R"(^\W*(?:n[°º]|no\.|nr\.)\s*[:.]?\s*([A-Z0-9][A-Z0-9\-/_.]{2,24})\s*$)")};
    Regex hashNumber{QStringLiteral(R"(#\s*(\d{3,}))")};
    // Compound labels end in the number word ("Rechnungsnummer"), so the full rules look inside words too.
    RulePattern numberWord{
        QStringLiteral(R"((no|num|number|nr|id)\b)"),
        QStringLiteral(R"((no|num|number|nr|id)\b|(?:nummer|num[ée]ro|n[°º])(?!\p{L}){number.word})")};
    // A value that is only a date ("12/03/2024") is no number.
    Regex dateOnly{QStringLiteral(R"(^\d{1,4}[/.\-]\d{1,2}[/.\-]\d{1,4}$)")};
};

// Compiled once per process, on first use.
const NumberPatterns &patterns()
{
    return Patterns::compiledOnce<NumberPatterns>();
}

// Any numeral counts here, wider than Patterns::hasDigit: a number may be written with digits of any kind.
bool hasNumeral(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isNumber(); });
}

// The prefixes the case-sensitive prefixed-number pattern starts with; rows without one skip it.
bool mayHoldPrefixedNumber(const QString &text)
{
    for (const char *prefix : {"INV", "RCPT", "REC", "BILL", "PO", "SO"}) {
        if (text.contains(QLatin1StringView(prefix)))
            return true;
    }
    return false;
}

QString trimSeparators(const QString &text)
{
    const auto isSeparator = [](QChar c) { return c == u'.' || c == u'-' || c == u'/' || c == u'_'; };
    qsizetype from = 0;
    qsizetype to = text.size();
    while (from < to && isSeparator(text[from]))
        ++from;
    while (to > from && isSeparator(text[to - 1]))
        --to;
    return text.mid(from, to - from);
}

double labelConfidence(const QString &keyword, const RuleFeatures &features)
{
    const QString k = keyword.toLower();
    if (k == QLatin1String("invoice") || k == QLatin1String("receipt") || k == QLatin1String("inv"))
        return 0.85;
    if (k == QLatin1String("order") || k == QLatin1String("transaction"))
        return 0.6;
    if (patterns().invoiceWord(features).contains(keyword))
        return 0.85;
    if (patterns().orderWord(features).contains(keyword))
        return 0.6;
    return 0.7;
}

// The best candidate so far; an equal confidence never replaces, so the earliest proposal wins.
struct Best {
    QString value;
    double confidence = -1;
    PageBox box;

    void offer(const QString &v, double c, const PageBox &b)
    {
        if (confidence < 0 || c > confidence) {
            value = v;
            confidence = c;
            box = b;
        }
    }
};

void offerLabelled(const Row &row, const RuleFeatures &features, Best &best)
{
    const NumberPatterns &p = patterns();
    if (!Keywords::may(row.text, Keywords::NumberLabel, features))
        return;
    for (const Regex::Match &m : p.numberLabel(features).matchAll(row.text)) {
        if (!m.has(2))
            continue;
        const QString value = trimSeparators(m.captured(row.text, 2));
        if (!hasNumeral(value) || p.dateOnly.contains(value))
            continue;
        double confidence = labelConfidence(m.captured(row.text, 1), features);
        const QString whole = m.captured(row.text);
        if (whole.contains(u':') || whole.contains(u'#') || p.numberWord(features).contains(whole))
            confidence += 0.07;
        best.offer(value, confidence, row.box(m.range(2)));
    }
}

void offerStacked(const QList<Row> &rows, qsizetype i, const RuleFeatures &features, Best &best)
{
    if (i + 1 >= rows.size() || !Keywords::may(rows[i].text, Keywords::NumberLabel, features) ||
        !patterns().stackedLabel(features).contains(rows[i].text))
        return;
    const Row &next = rows[i + 1];
    if (next.page != rows[i].page || next.lines.isEmpty())
        return;
    const TextLine &line = next.lines.first();
    const QStringList pieces = line.text.split(u' ', Qt::SkipEmptyParts);
    const QString token = pieces.isEmpty() ? QString() : pieces.first();
    if (hasNumeral(token) && !patterns().dateOnly.contains(token))
        best.offer(token, 0.7, PageBox{line.page, line.rect});
}

} // namespace

qsizetype invoiceNumberAt(const QString &text, const RuleFeatures &features)
{
    if (!Keywords::may(text, Keywords::NumberLabel, features))
        return -1;
    for (const Regex::Match &m : patterns().numberLabel(features).matchAll(text)) {
        const QString value = trimSeparators(m.captured(text, 2));
        if (m.has(2) && hasNumeral(value) && !patterns().dateOnly.contains(value) &&
            labelConfidence(m.captured(text, 1), features) >= 0.85)
            return m.range().start;
    }
    return -1;
}

Field findNumber(const QList<Row> &rows, const RuleFeatures &features)
{
    const NumberPatterns &p = patterns();
    Field field = emptyField(QStringLiteral("number"), QStringLiteral("Invoice / receipt no."));
    Best best;
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const Row &row = rows[i];
        offerLabelled(row, features, best);
        const bool numeral = hasNumeral(row.text);
        if (const auto m =
                numeral && mayHoldPrefixedNumber(row.text) ? p.prefixedNumber.match(row.text) : std::nullopt)
            best.offer(m->captured(row.text, 1), 0.72, row.box(m->range(1)));
        offerStacked(rows, i, features, best);
        if (features.markedNumbers && numeral) {
            for (const TextLine &line : row.lines) {
                const auto m = p.markedNumber.match(line.text);
                if (m && hasNumeral(m->captured(line.text, 1)) &&
                    !p.dateOnly.contains(m->captured(line.text, 1)))
                    best.offer(m->captured(line.text, 1), 0.6, PageBox{line.page, line.rect});
            }
        }
        if (const auto m = numeral && row.text.contains(u'#') ? p.hashNumber.match(row.text) : std::nullopt)
            best.offer(m->captured(row.text, 1), 0.45, row.box(m->range(1)));
    }
    if (best.confidence < 0)
        return field;
    field.value = best.value;
    field.confidence = std::min(best.confidence, 0.95);
    field.box = best.box;
    return field;
}

} // namespace Extractor
