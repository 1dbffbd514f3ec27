#include "Doubts.h"

#include "Money.h"

#include <cmath>
#include <optional>

namespace {

std::optional<double> amount(const QList<Field> &fields, const char *key)
{
    for (const Field &f : fields) {
        if (f.key == QLatin1String(key))
            return Money::amountOf(f);
    }
    return std::nullopt;
}

} // namespace

namespace Doubts {

QList<Doubt> of(const QList<Field> &fields, const QList<LineItem> &items)
{
    const std::optional<double> subtotal = amount(fields, "subtotal");
    const std::optional<double> tax = amount(fields, "tax");
    const std::optional<double> total = amount(fields, "total");

    QList<Doubt> doubts;
    if (tax && std::llround(*tax * 100.0) < 0)
        doubts.append({QStringLiteral("tax"), QStringLiteral("The tax is negative.")});
    if (total && subtotal && std::llround(*total * 100.0) < std::llround(*subtotal * 100.0))
        doubts.append({QStringLiteral("total"), QStringLiteral("The total is below the subtotal.")});
    if (total && subtotal && tax && !withinACent(*subtotal + *tax, *total))
        doubts.append({QStringLiteral("total"), QStringLiteral("Subtotal + tax is ") +
                                                    Money::pretty(*subtotal + *tax) +
                                                    QStringLiteral(", not the total.")});
    const std::optional<double> sum = itemsSum(items);
    if (subtotal && sum && !withinACent(*sum, *subtotal))
        doubts.append({QStringLiteral("subtotal"), QStringLiteral("The line items add up to ") +
                                                       Money::pretty(*sum) +
                                                       QStringLiteral(", not the subtotal.")});
    return doubts;
}

std::optional<double> itemsSum(const QList<LineItem> &items)
{
    std::optional<double> sum;
    for (const LineItem &item : items) {
        if (const std::optional<double> amount = Money::parse(item.amount))
            sum = sum.value_or(0.0) + *amount;
    }
    return sum;
}

bool withinACent(double a, double b)
{
    // Whole cents compared as doubles: llround of an amount beyond the integer range has no value.
    return std::abs(std::round(a * 100.0) - std::round(b * 100.0)) <= 1.0;
}

QStringList reasonsFor(const QList<Doubt> &doubts, const QString &key)
{
    QStringList reasons;
    for (const Doubt &d : doubts) {
        if (d.key == key)
            reasons.append(d.reason);
    }
    return reasons;
}

} // namespace Doubts
