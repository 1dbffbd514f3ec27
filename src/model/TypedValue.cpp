#include "TypedValue.h"

#include "Money.h"

#include <QStringList>
#include <cmath>

namespace TypedValue {

namespace {

bool isGroupingBlank(QChar c)
{
    return c == u' ' || c == u'\u00A0' || c == u'\u202F' || c == u'\'';
}

// A currency sign or a three-letter code at either end ("EUR 12", "12,50 €"); the rest is returned.
QString withoutCurrency(QString text)
{
    text = text.trimmed();
    while (!text.isEmpty() && text.front().category() == QChar::Symbol_Currency)
        text = text.mid(1).trimmed();
    while (!text.isEmpty() && text.back().category() == QChar::Symbol_Currency)
        text = text.chopped(1).trimmed();
    const auto isCode = [](QStringView s) {
        return s.size() == 3 &&
               std::all_of(s.begin(), s.end(), [](QChar c) { return c >= u'A' && c <= u'Z'; });
    };
    if (text.size() > 3 && isCode(QStringView(text).left(3)) && !text.at(3).isLetter())
        text = text.mid(3).trimmed();
    if (text.size() > 3 && isCode(QStringView(text).right(3)) && !text.at(text.size() - 4).isLetter())
        text = text.chopped(3).trimmed();
    return text;
}

// Month first when the locale's short date puts the month before the day and does not start with the
// year (English, United States).
bool monthFirst(const QLocale &locale)
{
    const QString format = locale.dateFormat(QLocale::ShortFormat);
    const qsizetype month = format.indexOf(u'M'), day = format.indexOf(u'd');
    return !format.startsWith(u'y') && month >= 0 && day >= 0 && month < day;
}

std::optional<QDate> numericDate(const QString &text, const QLocale &locale)
{
    QStringList parts;
    for (QChar sep : {u'-', u'/', u'.'}) {
        if (text.count(sep) == 2)
            parts = text.split(sep);
    }
    if (parts.size() != 3)
        return std::nullopt;
    int n[3];
    for (int i = 0; i < 3; ++i) {
        bool ok = false;
        n[i] = parts[i].trimmed().toInt(&ok);
        if (!ok || parts[i].trimmed().isEmpty())
            return std::nullopt;
    }
    if (parts[0].trimmed().size() == 4) // year first: 2024-03-05, 2024/3/5
        return QDate(n[0], n[1], n[2]).isValid() ? std::optional(QDate(n[0], n[1], n[2])) : std::nullopt;
    const qsizetype yearDigits = parts[2].trimmed().size();
    if (yearDigits != 2 && yearDigits != 4)
        return std::nullopt;
    const int year = yearDigits == 4 ? n[2] : (n[2] < 70 ? 2000 + n[2] : 1900 + n[2]);
    // A part above 12 can only be the day; otherwise the locale decides.
    const bool mFirst = n[0] > 12 ? false : n[1] > 12 ? true : monthFirst(locale);
    const QDate date(year, mFirst ? n[0] : n[1], mFirst ? n[1] : n[0]);
    return date.isValid() ? std::optional(date) : std::nullopt;
}

} // namespace

Kind ofField(const QString &key)
{
    if (key == QLatin1String("subtotal") || key == QLatin1String("tax") || key == QLatin1String("total"))
        return Kind::Amount;
    if (key == QLatin1String("date") || key == QLatin1String("dueDate"))
        return Kind::Date;
    return Kind::Text;
}

Kind ofColumn(LineItem::Column column)
{
    switch (column) {
    case LineItem::Quantity:
        return Kind::Quantity;
    case LineItem::UnitPrice:
    case LineItem::Amount:
        return Kind::Amount;
    case LineItem::Description:
        break;
    }
    return Kind::Text;
}

std::optional<double> amount(const QString &input, const QLocale &locale)
{
    QString text = withoutCurrency(input);
    bool negative = false;
    if (text.startsWith(u'(') && text.endsWith(u')')) {
        negative = true;
        text = text.mid(1).chopped(1).trimmed();
    } else if (text.startsWith(u'-') || text.startsWith(u'\u2212')) {
        negative = true;
        text = text.mid(1).trimmed();
    } else if (text.endsWith(u'-')) {
        negative = true;
        text.chop(1);
    }
    QString digits; // digits with at most the separators '.' and ','
    for (QChar c : text) {
        if (isGroupingBlank(c))
            continue;
        if (!(c.isDigit() && c.unicode() < 128) && c != u'.' && c != u',')
            return std::nullopt;
        digits += c;
    }
    if (digits.isEmpty() || !digits.front().isDigit())
        return std::nullopt;
    // A lone separator before exactly three digits is the locale's call ("1.234" is 1234 in Germany and
    // 1.234 in England).
    const QString point = locale.decimalPoint();
    const QChar decimal = Money::decimalMark(digits, point.size() == 1 ? point.front() : QChar());
    if (!decimal.isNull() && digits.count(decimal) > 1)
        return std::nullopt;
    QString plain;
    for (QChar c : digits) {
        if (c == decimal)
            plain += u'.';
        else if (c.isDigit())
            plain += c;
    }
    bool ok = false;
    const double value = plain.toDouble(&ok);
    if (!ok || !std::isfinite(value))
        return std::nullopt;
    return negative ? -value : value;
}

std::optional<QDate> date(const QString &input, const QLocale &locale)
{
    const QString text = input.trimmed();
    if (const std::optional<QDate> numeric = numericDate(text, locale))
        return numeric;
    static const QString formats[] = {
        QStringLiteral("d MMMM yyyy"),  QStringLiteral("d MMM yyyy"),  QStringLiteral("d. MMMM yyyy"),
        QStringLiteral("MMMM d, yyyy"), QStringLiteral("MMM d, yyyy"), QStringLiteral("MMMM d yyyy"),
        QStringLiteral("MMM d yyyy"),   QStringLiteral("d-MMM-yyyy"),
    };
    for (const QLocale &l : {locale, QLocale(QLocale::English)}) {
        for (const QString &format : formats) {
            if (const QDate d = l.toDate(text, format); d.isValid())
                return d;
        }
    }
    return std::nullopt;
}

std::optional<QString> exported(const QString &text, Kind kind, const QLocale &locale)
{
    if (kind == Kind::Text || text.trimmed().isEmpty())
        return text;
    if (kind == Kind::Date) {
        const std::optional<QDate> d = date(text, locale);
        return d ? std::optional(d->toString(Qt::ISODate)) : std::nullopt;
    }
    const std::optional<double> value = amount(text, locale);
    if (!value)
        return std::nullopt;
    if (kind == Kind::Quantity)
        return std::abs(*value) < 9e15 ? std::optional(Money::formatQuantity(*value)) : std::nullopt;
    return Money::twoDecimals(*value);
}

QString problem(const QString &text, Kind kind, const QLocale &locale)
{
    if (exported(text, kind, locale))
        return {};
    switch (kind) {
    case Kind::Amount:
        return QStringLiteral("Not an amount: type a number such as %1 or 1234.56.")
            .arg(locale.toString(1234.56, 'f', 2));
    case Kind::Quantity:
        return QStringLiteral("Not a quantity: type a number such as 2 or %1.").arg(locale.toString(1.5));
    case Kind::Date:
        return QStringLiteral("Not a date: type one such as %1 or 2024-03-05.")
            .arg(locale.toString(QDate(2024, 3, 5), QLocale::ShortFormat));
    case Kind::Text:
        break;
    }
    return {};
}

} // namespace TypedValue
