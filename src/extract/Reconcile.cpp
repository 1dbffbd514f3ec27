#include "Reconcile.h"

#include "model/Doubts.h"
#include "model/Money.h"

#include <cmath>

namespace Extractor {

namespace {

bool agree(double a, double b)
{
    return std::abs(a - b) < 0.011;
}

std::optional<double> present(const Field &field)
{
    return field.value.isEmpty() ? std::nullopt : Money::parse(field.value);
}

void raise(Field &field, double floor)
{
    field.confidence = std::max(field.confidence, floor);
}

void write(Field &field, double value)
{
    field.value = Money::twoDecimals(value);
    field.confidence = 0.5;
}

void cap(Field &field)
{
    field.confidence = std::min(field.confidence, 0.6);
}

} // namespace

void capFailedChecks(Field &subtotal, Field &tax, const Field &total, QList<LineItem> &items)
{
    const auto s = present(subtotal);
    const auto t = present(tax);
    const auto T = present(total);
    const auto sum = Doubts::itemsSum(items);
    const bool itemsAgree =
        sum && ((s && Doubts::withinACent(*sum, *s)) || (T && t && Doubts::withinACent(*sum, *T - *t)) ||
                (T && Doubts::withinACent(*sum, *T)));
    if (sum && (s || T) && !itemsAgree) {
        for (LineItem &item : items)
            item.confidence = std::min(item.confidence, 0.6);
    }
    if (s && t && T && !Doubts::withinACent(*s + *t, *T)) {
        if (!(sum && Doubts::withinACent(*sum, *s)))
            cap(subtotal);
        cap(tax);
    }
}

void reconcile(Field &subtotal, Field &tax, Field &total, const QList<LineItem> &items)
{
    const auto s = present(subtotal);
    const auto t = present(tax);
    const auto T = present(total);
    const qsizetype n = items.size();
    double sum = 0;
    for (const LineItem &item : items) {
        if (const auto amount = Money::parse(item.amount))
            sum += *amount;
    }

    if (!s) {
        if (T) {
            if (t)
                write(subtotal, *T - *t);
            if (n == 0)
                return;
            if (agree(sum, *T))
                raise(total, 0.95);
        } else if (n == 0) {
            return;
        }
        if (sum > 0 && subtotal.value.isEmpty())
            write(subtotal, sum);
        return;
    }

    if (n > 0 && agree(sum, *s))
        raise(subtotal, 0.95);
    if (t) {
        if (!T) {
            write(total, *s + *t);
        } else if (agree(*s + *t, *T)) {
            raise(subtotal, 0.97);
            raise(tax, 0.97);
            raise(total, 0.97);
        }
    } else if (T) {
        const double d = *T - *s;
        if (std::abs(d) < 0.005)
            tax.value = QStringLiteral("0.00");
        else
            tax.value = Money::twoDecimals(d);
        tax.confidence = 0.5;
    }
}

} // namespace Extractor
