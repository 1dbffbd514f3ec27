#include "Dates.h"
#include "Patterns.h"

#include "DateDetector.h"
#include "Keywords.h"
#include "Number.h"
#include "Regex.h"
#include "Rows.h"
#include "Vocabulary.h"
#include "model/Money.h"

#include <algorithm>

namespace Extractor {

namespace {

using DateDetector::Order;

struct DatePatterns {
    // The vocabularies' labels come first: "Date d'échéance" is one due label, not the issue label "Date".
    // The full rules want "date" as a word of its own: German "Daten" (data) is no label.
    RulePattern dateLabel{
        QStringLiteral(R"(due\s*date|payment\s*due|pay(?:able)?\s*by|\bdue\b|)"
                       R"((?:invoice|issue|order|billing|bill|receipt|purchase)?\s*date|issued|dated)"),
        QStringLiteral(
            R"({date.due|}{date.issue|}due\s*date|payment\s*due|pay(?:able)?\s*by|\bdue\b|)"
            R"((?:invoice|issue|order|billing|bill|receipt|purchase)?\s*date(?!\p{L})|issued|dated)")};
    // A vocabulary label that names a due date.
    RulePattern dueWords{QStringLiteral(R"((?!){date.due})")};
    // The only filter against spurious detections: weekday names, relative words and bare times have no
    // digits beside a month or three numeric parts.
    RulePattern dateShape{
        QStringLiteral(
            R"(\d{1,4}[/.\-]\d{1,2}[/.\-]\d{1,4}|(?:jan|feb|mar|apr|may|jun|jul|aug|sep|oct|nov|dec)[a-z]*\.?\s+\d{1,2}|)"
            R"(\d{1,2}(?:st|nd|rd|th)?\s+(?:jan|feb|mar|apr|may|jun|jul|aug|sep|oct|nov|dec))"),
        QStringLiteral(
            R"(\d{1,4}[/.\-]\d{1,2}[/.\-]\d{1,4}|(?:jan|feb|mar|apr|may|jun|jul|aug|sep|oct|nov|dec{months})\p{L}*\.?\s+\d{1,2}|)"
            R"(\d{1,2}(?:st|nd|rd|th|er|e)?\.?\s+(?:de\s+)?(?:jan|feb|mar|apr|may|jun|jul|aug|sep|oct|nov|dec{months}))")};
    Regex netTerms{QStringLiteral(R"(\bnet\s*(\d{1,3})\b)")};
    // Payment terms in other languages: "zahlbar innerhalb von 14 Tagen", "30 jours net".
    RulePattern termsWithin{QStringLiteral(R"((?:(?!){terms.within})\s*(\d{1,3})\s*(?:(?!){terms.days}))")};
    RulePattern termsNet{
        QStringLiteral(R"((?<![\d.,])(\d{1,3})\s*(?:(?!){terms.days})\s*(?:(?!){terms.net}))")};
    RulePattern dueOnReceipt{QStringLiteral(R"(due\s*(?:on|upon)\s*receipt{terms.immediate})")};
    // Labels of the vocabularies' languages, all of which write numeric dates day first, and labels
    // that only an English document prints: together they tell a document's own date convention.
    RulePattern foreignLabel{
        QStringLiteral(R"((?!){date.issue}{date.due}{number.invoice}{total.gross}{subtotal})")};
    Regex englishLabel{QStringLiteral(
        R"(\b(invoice|receipt|due|bill\s*to|amount|balance|subtotal|payment|quantity|qty)\b)")};
};

const DatePatterns &patterns()
{
    return Patterns::compiledOnce<DatePatterns>();
}

// The days of the document's payment terms, if it states them.
std::optional<int> termDays(const QString &doc, const RuleFeatures &features)
{
    const DatePatterns &p = patterns();
    std::optional<Regex::Match> m = p.netTerms.match(doc);
    if (!m)
        m = p.termsWithin(features).match(doc);
    if (!m)
        m = p.termsNet(features).match(doc);
    bool parsed = false;
    const int days = m ? m->captured(doc, 1).toInt(&parsed) : 0;
    return parsed ? std::optional<int>(days) : std::nullopt;
}

// Whether the document's labels are of the vocabularies' languages alone (German or French words, no
// English): ambiguous numeric dates then follow the document's day-first convention, not the user's.
bool writesDayFirst(const QList<Row> &rows)
{
    const QString doc = documentText(rows);
    return patterns().foreignLabel(RuleSet::Full).contains(doc) && !patterns().englishLabel.contains(doc);
}

enum Kind { Issue = 0, Due = 1 };

struct DateHit {
    int kind = Issue;
    QDate date;
    double conf = 0;
    PageBox box;
};

struct LabelMark {
    qsizetype loc = 0;
    int kind = Issue;
};

// Detected dates of each row that have a date's shape, left to right.
using RowDates = QList<QList<DateDetector::Match>>;

RowDates detectDates(const QList<Row> &rows, Order order, const QDate &today, const RuleFeatures &features)
{
    RowDates all;
    all.reserve(rows.size());
    for (const Row &row : rows) {
        QList<DateDetector::Match> dates;
        for (const DateDetector::Match &m : DateDetector::find(row.text, order, today, features)) {
            if (patterns().dateShape(features).contains(row.text.mid(m.range.start, m.range.length)))
                dates.append(m);
        }
        all.append(dates);
    }
    return all;
}

// One order per document: the locale's, unless the numeric dates that read one way only mostly read
// the other way (a receipt printing 23/01/2018 also means 02/01/2018 day first).
Order documentOrder(const RowDates &dates, Order localeOrder)
{
    int agree = 0;
    int disagree = 0;
    for (const auto &row : dates) {
        for (const DateDetector::Match &m : row) {
            if (m.onlyOrder)
                ++(*m.onlyOrder == localeOrder ? agree : disagree);
        }
    }
    if (disagree > agree)
        return localeOrder == Order::DayFirst ? Order::MonthFirst : Order::DayFirst;
    return localeOrder;
}

// A year of the 2100s to 2900s on a scan is a misread 20xx ("2618" for "2018": 0 and 6, 4 or 8 look alike
// on faded print): read as 20xx when that is no later than next year, below green.
bool repairYear(DateHit &hit, const QDate &today)
{
    const int year = hit.date.year();
    if (year < 2100 || year > 2999 || 2000 + year % 100 > today.year() + 1)
        return false;
    const QDate repaired(2000 + year % 100, hit.date.month(), hit.date.day());
    if (!repaired.isValid())
        return false;
    hit.date = repaired;
    hit.conf = std::min(hit.conf, 0.6);
    return true;
}

QList<DateHit> collectHits(const QList<Row> &rows, const RowDates &rowDates, const RuleFeatures &features,
                           const QDate &today)
{
    QList<DateHit> hits;
    QList<int> carried;
    for (qsizetype r = 0; r < rows.size(); ++r) {
        const Row &row = rows[r];
        const QList<DateDetector::Match> &dates = rowDates[r];
        // Labels matter only to this row's dates or, carried, to the next row's: skip the search
        // otherwise (the carried list would be cleared by the next row anyway).
        if (dates.isEmpty() && (r + 1 == rows.size() || rowDates[r + 1].isEmpty())) {
            carried.clear();
            continue;
        }
        QList<LabelMark> marks;
        const QList<Regex::Match> labels = Keywords::may(row.text, Keywords::DateLabel, features)
                                               ? patterns().dateLabel(features).matchAll(row.text)
                                               : QList<Regex::Match>();
        for (const Regex::Match &m : labels) {
            const QString label = m.captured(row.text).toLower();
            const bool due = label.contains(QLatin1String("due")) || label.contains(QLatin1String("by")) ||
                             patterns().dueWords(features).contains(label);
            marks.append(LabelMark{m.range().start, due ? Due : Issue});
        }
        for (qsizetype i = 0; i < dates.size(); ++i) {
            DateHit hit{Issue, dates[i].date, 0.55, row.box(dates[i].range)};
            const LabelMark *nearest = nullptr;
            for (const LabelMark &mark : marks) {
                if (mark.loc < dates[i].range.start)
                    nearest = &mark;
            }
            if (nearest) {
                hit.kind = nearest->kind;
                hit.conf = 0.9;
            } else if (features.dateByNumber && invoiceNumberAt(row.text, features) >= 0 &&
                       invoiceNumberAt(row.text, features) < dates[i].range.start) {
                // "Rechnung Nr. 123 vom 12.03.2024", "Invoice #123 – 5 March 2024": the date the invoice
                // number is given with is its issue date.
                hit.conf = 0.85;
            } else if (marks.isEmpty() && i < carried.size()) {
                // A row of labels stacked above a row of dates: the i-th date takes the i-th label.
                hit.kind = carried[i];
                hit.conf = 0.8;
            }
            if (features.yearRepair)
                repairYear(hit, today);
            hits.append(hit);
        }
        carried.clear();
        if (dates.isEmpty()) {
            for (const LabelMark &mark : marks)
                carried.append(mark.kind);
        }
    }
    return hits;
}

const DateHit *bestOfKind(const QList<DateHit> &hits, int kind)
{
    const DateHit *best = nullptr;
    for (const DateHit &hit : hits) {
        if (hit.kind == kind && (!best || hit.conf > best->conf))
            best = &hit;
    }
    return best;
}

void fill(Field &field, const DateHit &hit)
{
    field.value = formatDate(hit.date);
    field.confidence = hit.conf;
    field.box = hit.box;
}

} // namespace

std::pair<Field, Field> findDates(const QList<Row> &rows, const RuleFeatures &features)
{
    return findDates(rows, Money::userLocale(), QDate::currentDate(), features);
}

std::pair<Field, Field> findDates(const QList<Row> &rows, const QLocale &locale, const QDate &today,
                                  const RuleFeatures &features)
{
    Field date = emptyField(QStringLiteral("date"), QStringLiteral("Date"));
    Field dueDate = emptyField(QStringLiteral("dueDate"), QStringLiteral("Due date"));

    const Order localeOrder =
        features.documentDateOrder && writesDayFirst(rows) ? Order::DayFirst : DateDetector::orderFor(locale);
    RowDates dates = detectDates(rows, localeOrder, today, features);
    const Order order = documentOrder(dates, localeOrder);
    if (order != localeOrder)
        dates = detectDates(rows, order, today, features);
    const QList<DateHit> hits = collectHits(rows, dates, features, today);
    const DateHit *issue = bestOfKind(hits, Issue);
    const DateHit *due = bestOfKind(hits, Due);
    if (issue)
        fill(date, *issue);
    if (due) {
        fill(dueDate, *due);
        // A due date before the issue date is a misread or a mislabelled date: shown for review.
        if (features.dueBeforeIssue && issue && due->date < issue->date)
            dueDate.confidence = std::min(dueDate.confidence, 0.6);
    } else if (issue) {
        const QString doc = documentText(rows);
        const std::optional<int> days = termDays(doc, features);
        const QDate termsDate = days ? issue->date.addDays(*days) : QDate();
        if (termsDate.isValid()) {
            dueDate.value = formatDate(termsDate);
            dueDate.confidence = 0.45;
        } else if (patterns().dueOnReceipt(features).contains(doc)) {
            dueDate.value = formatDate(issue->date);
            dueDate.confidence = 0.5;
        }
    }
    return {date, dueDate};
}

QString formatDate(const QDate &date)
{
    return date.toString(Qt::ISODate);
}

} // namespace Extractor
