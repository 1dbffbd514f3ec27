#include "Money.h"

#include <charconv>
#include <cmath>
#include <string>

namespace Money {

namespace {

// "%.Nf" without the C locale's decimal comma: exact ties round to even, as printf does.
QString printfFixed(double value, int decimals)
{
    char buffer[400];
    const auto result =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, decimals);
    return QString::fromLatin1(buffer, result.ptr - buffer);
}

} // namespace

std::optional<double> parse(const QString &input)
{
    const QString text = input.trimmed();
    if (text.isEmpty())
        return std::nullopt;
    const bool negative = text.startsWith(u'-') || (text.startsWith(u'(') && text.endsWith(u')'));

    QString kept;
    for (QChar c : text) {
        if (c.isNumber() || c == u',' || c == u'.')
            kept += c;
    }
    if (kept.isEmpty())
        return std::nullopt;

    const QChar decimal = decimalMark(kept);

    std::string number;
    number.reserve(size_t(kept.size()));
    for (QChar c : kept) {
        if (c == u',' || c == u'.') {
            if (c == decimal)
                number += '.';
        } else if (c >= u'0' && c <= u'9') {
            number += char(c.unicode());
        } else {
            return std::nullopt; // a numeric character that is not an ASCII decimal digit
        }
    }
    if (number.empty() || number == ".")
        return std::nullopt;
    double value = 0;
    const auto [end, ec] = std::from_chars(number.data(), number.data() + number.size(), value);
    if (ec != std::errc() || end != number.data() + number.size())
        return std::nullopt;
    return negative ? -value : value;
}

QChar decimalMark(QStringView digits, QChar loneBeforeThree)
{
    const qsizetype dot = digits.lastIndexOf(u'.');
    const qsizetype comma = digits.lastIndexOf(u',');
    if (dot >= 0 && comma >= 0)
        return dot > comma ? u'.' : u',';
    if (dot < 0 && comma < 0)
        return {};
    const QChar sep = dot >= 0 ? u'.' : u',';
    if (digits.count(sep) != 1)
        return {};
    return digits.size() - std::max(dot, comma) - 1 != 3 || sep == loneBeforeThree ? sep : QChar();
}

QString pretty(double value, const QLocale &locale)
{
    const QString text = locale.toString(value, 'f', 2);
    return text.isEmpty() ? twoDecimals(value) : text;
}

QString pretty(double value)
{
    static const QLocale locale = userLocale();
    return pretty(value, locale);
}

QString formatQuantity(double quantity)
{
    const double whole = std::round(quantity);
    if (std::abs(quantity - whole) < 0.0001) {
        // Past 2^53 every double is whole, and converting to long long could overflow.
        if (std::abs(whole) < 9e15)
            return QString::number(static_cast<long long>(whole));
        return QString::number(whole, 'f', 0);
    }
    QString text = printfFixed(quantity, 3);
    while (text.endsWith(u'0'))
        text.chop(1);
    return text;
}

std::optional<double> amountOf(const Field &field)
{
    return field.value.isEmpty() ? std::nullopt : parse(field.value);
}

QString twoDecimals(double value)
{
    return printfFixed(value, 2);
}

QLocale userLocale()
{
    const QLocale system = QLocale::system();
    if (system.language() == QLocale::C)
        return QLocale(QLocale::English, QLocale::UnitedStates);
    return system;
}

} // namespace Money
