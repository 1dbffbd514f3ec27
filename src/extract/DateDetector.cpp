#include "DateDetector.h"

#include "Patterns.h"
#include "Regex.h"
#include "Vocabulary.h"

#include <QSet>

#include <algorithm>

namespace DateDetector {

namespace {

// An optional weekday before a month-name date: "Tue, ", "Tuesday ", "Thurs. ".
constexpr QLatin1StringView weekdayPart(
    R"((?:(?:mon(?:day)?|tue(?:s(?:day)?)?|wed(?:nesday)?|thu(?:r(?:s(?:day)?)?)?|fri(?:day)?|sat(?:urday)?|)"
    R"(sun(?:day)?)\.?,?\s+)?)");
// A month name or abbreviation, optionally with a dot, not followed by further letters ("Marketing").
// The full rules add the vocabularies' month names.
constexpr QLatin1StringView monthPart(
    R"((jan(?:uary)?|feb(?:ruary)?|mar(?:ch)?|apr(?:il)?|may|june?|july?|aug(?:ust)?|sep(?:t(?:ember)?)?|)"
    R"(oct(?:ober)?|nov(?:ember)?|dec(?:ember)?{months})\.?(?!\p{L}))");
// An optional year after the day or month; a number glued to a time or a decimal ("12:30") is no year.
// The full rules allow a "de" before it ("3 de mayo de 2024").
constexpr QLatin1StringView yearPart(R"((?:[\s.,/\-']*{yearlead}(\d{4}|\d{2})(?!\p{N})(?![.,:]\p{N}))?)");
// Between a day and its month: "5th of March", "1er janvier", "3 de mayo", "11. Juli".
constexpr QLatin1StringView
    dayPart(R"((\d{1,2})(?:st|nd|rd|th{ordinals})?(?!\p{N})(?:\s+(?:of{dayof}))?[\s.,/\-]*)");

// One date form under both rule sets: the placeholders below filled (full rules) or dropped (core rules);
// RulePattern fills the full pattern's vocabulary placeholders.
RulePattern datePattern(const QString &pattern)
{
    const auto fill = [&pattern](bool full) {
        QString filled = pattern;
        filled.replace(QLatin1String("{yearlead}"), full ? QLatin1String("(?:del?\\s+)?") : QLatin1String());
        filled.replace(QLatin1String("{ordinals}"), full ? QLatin1String("|er|e") : QLatin1String());
        filled.replace(QLatin1String("{dayof}"), full ? QLatin1String("|de|del") : QLatin1String());
        return filled;
    };
    return RulePattern(Vocabulary::expand(fill(false), RuleSet::Core), fill(true));
}

// Nothing that belongs to a word or number before the expression.
constexpr QLatin1StringView standAlone(R"((?<![\p{L}\p{N}]))");

// Whether the date continues a run of numbers joined by its own separator ("1.2" before ".3.2024").
bool continuesRun(const QString &text, qsizetype start, QChar separator)
{
    return start >= 2 && text[start - 1] == separator && text[start - 2].isDigit();
}

struct DatePatterns {
    // Three numbers joined by one repeated separator, standing alone: not inside an identifier
    // ("INV-03-04-2024"), a longer number or a longer run with the same separator ("1.2.3.4"), nor after
    // a "+" (phone). A different separator may join two dates ("01.05.14-31.05.14"); the one before the
    // date is checked in code, as a look-behind cannot refer to the captured separator. A following "T"
    // and digit (an ISO time) is allowed.
    Regex numeric{QStringLiteral(R"((?<![\p{L}\p{N}_+])(?<!\p{L}[/\-])(\d{1,4})([/.\-])(\d{1,2})\2(\d{1,4}))"
                                 R"((?!\p{N})(?!\2\p{N})(?!(?!T\d)[\p{L}_]))")};
    // Day before the month: "5 Mar 2024", "05-Mar-24", "5th of March", "Tue, 5 Mar 2024".
    RulePattern dayMonth = datePattern(QString(standAlone) + weekdayPart + dayPart + monthPart + yearPart);
    // Month before the day: "March 5, 2024", "Mar 5 2024", "Sept. 3rd", "Tuesday March 5".
    RulePattern monthDay =
        datePattern(QString(standAlone) + weekdayPart + monthPart +
                    QLatin1StringView(R"([\s.,/\-]*(\d{1,2})(?:st|nd|rd|th)?(?!\p{N}))") + yearPart);
};

const DatePatterns &patterns()
{
    return Patterns::compiledOnce<DatePatterns>();
}

// 1…12 for a month name or abbreviation, 0 for none: English by its first three letters, the
// vocabularies' names (RuleFeatures::vocabularies) as listed.
int monthNumber(const QString &name, const RuleFeatures &features)
{
    if (features.vocabularies) {
        if (const int month = Vocabulary::active().months.value(name.toLower().remove(u'.')))
            return month;
    }
    static const QStringList prefixes{QStringLiteral("jan"), QStringLiteral("feb"), QStringLiteral("mar"),
                                      QStringLiteral("apr"), QStringLiteral("may"), QStringLiteral("jun"),
                                      QStringLiteral("jul"), QStringLiteral("aug"), QStringLiteral("sep"),
                                      QStringLiteral("oct"), QStringLiteral("nov"), QStringLiteral("dec")};
    return int(prefixes.indexOf(name.left(3).toLower())) + 1;
}

// Two digits name 1970–2069; four digits are taken as written.
int fullYear(const QString &digits)
{
    const int year = digits.toInt();
    if (digits.size() != 2)
        return year;
    return year < 70 ? 2000 + year : 1900 + year;
}

QDate makeDate(int year, int month, int day)
{
    // QDate has no year 0; a written "0000" is no date rather than 1 BC.
    if (year == 0)
        return {};
    return QDate(year, month, day);
}

// Whether a digit, a date separator and a digit stand together, as every numeric date needs.
bool hasNumericShape(const QString &text)
{
    for (qsizetype i = 0; i + 2 < text.size(); ++i) {
        const QChar separator = text[i + 1];
        if ((separator == u'/' || separator == u'.' || separator == u'-') && text[i].isDigit() &&
            text[i + 2].isDigit())
            return true;
    }
    return false;
}

void addNumeric(const QString &text, Order order, bool dottedDayFirst, QList<Match> &out)
{
    if (!hasNumericShape(text))
        return;
    for (const Regex::Match &m : patterns().numeric.matchAll(text)) {
        const QString first = m.captured(text, 1);
        const QString second = m.captured(text, 3);
        const QString third = m.captured(text, 4);
        const QChar separator = text[m.range(2).start];
        if (continuesRun(text, m.range().start, separator))
            continue;
        // Dotted numeric dates are written day first wherever they are used (06.08.2018 is 6 August).
        const Order own = dottedDayFirst && separator == u'.' ? Order::DayFirst : order;
        Match found;
        found.range = m.range();
        if (first.size() == 4) {
            if (third.size() > 2)
                continue;
            found.date = makeDate(first.toInt(), second.toInt(), third.toInt());
        } else if (first.size() <= 2 && (third.size() == 2 || third.size() == 4)) {
            const int year = fullYear(third);
            const QDate dayFirst = makeDate(year, second.toInt(), first.toInt());
            const QDate monthFirst = makeDate(year, first.toInt(), second.toInt());
            if (dayFirst.isValid() && monthFirst.isValid())
                found.date = own == Order::DayFirst ? dayFirst : monthFirst;
            else if (dayFirst.isValid())
                found = Match{m.range(), dayFirst, Order::DayFirst};
            else if (monthFirst.isValid())
                found = Match{m.range(), monthFirst, Order::MonthFirst};
        }
        if (found.date.isValid())
            out.append(found);
    }
}

void addNamed(const QString &text, const Regex &rx, int dayGroup, int monthGroup, const QDate &today,
              const RuleFeatures &features, QList<Match> &out)
{
    for (const Regex::Match &m : rx.matchAll(text)) {
        const int year = m.has(3) ? fullYear(m.captured(text, 3)) : today.year();
        const QDate date = makeDate(year, monthNumber(m.captured(text, monthGroup), features),
                                    m.captured(text, dayGroup).toInt());
        if (date.isValid())
            out.append(Match{m.range(), date, std::nullopt});
    }
}

// Whether some word starts with a month's first three letters: a cheap test before the month-name
// patterns, which are the costly ones.
bool hasMonthWord(const QString &text, const RuleFeatures &features)
{
    static const QSet<QString> fullPrefixes = [] {
        QSet<QString> prefixes;
        for (auto it = Vocabulary::active().months.cbegin(); it != Vocabulary::active().months.cend(); ++it)
            prefixes.insert(it.key().left(3));
        return prefixes;
    }();
    for (qsizetype i = 0; i + 3 <= text.size(); ++i) {
        if (!text[i].isLetter() || (i > 0 && text[i - 1].isLetter()))
            continue;
        if (monthNumber(text.mid(i, 3), RuleSet::Core) > 0 ||
            (features.vocabularies && fullPrefixes.contains(text.mid(i, 3).toLower())))
            return true;
    }
    return false;
}

} // namespace

QList<Match> find(const QString &text, Order order, const QDate &today, const RuleFeatures &features)
{
    QList<Match> all;
    if (!Patterns::hasDigit(text))
        return all;
    addNumeric(text, order, features.dottedDayFirst, all);
    if (hasMonthWord(text, features)) {
        addNamed(text, patterns().dayMonth(features), 1, 2, today, features, all);
        addNamed(text, patterns().monthDay(features), 2, 1, today, features, all);
    }
    std::stable_sort(all.begin(), all.end(), [](const Match &a, const Match &b) {
        return a.range.start != b.range.start ? a.range.start < b.range.start
                                              : a.range.length > b.range.length;
    });
    QList<Match> chosen;
    for (const Match &match : all) {
        if (chosen.isEmpty() || match.range.start >= chosen.last().range.end())
            chosen.append(match);
    }
    return chosen;
}

Order orderFor(const QLocale &locale)
{
    const QString format = locale.dateFormat(QLocale::ShortFormat);
    const qsizetype day = format.indexOf(u'd');
    const qsizetype month = format.indexOf(u'M');
    const bool yearFirst = format.trimmed().startsWith(u'y');
    return !yearFirst && month >= 0 && day >= 0 && month < day ? Order::MonthFirst : Order::DayFirst;
}

} // namespace DateDetector
