#include "Reconcile.h"

#include "model/Doubts.h"
#include "model/Money.h"

#include <cmath>

namespace Extractor {

namespace {

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

bool itemsAddUp(const QList<LineItem> &items, const Field &subtotal, const Field &tax, const Field &total)
{
    const auto sum = Doubts::itemsSum(items);
    const auto s = Money::amountOf(subtotal);
    const auto t = Money::amountOf(tax);
    const auto T = Money::amountOf(total);
    return sum && ((s && Doubts::withinACent(*sum, *s)) || (T && t && Doubts::withinACent(*sum, *T - *t)) ||
                   (T && Doubts::withinACent(*sum, *T)));
}

void capFailedChecks(Field &subtotal, Field &tax, const Field &total, QList<LineItem> &items)
{
    const auto s = Money::amountOf(subtotal);
    const auto t = Money::amountOf(tax);
    const auto T = Money::amountOf(total);
    const auto sum = Doubts::itemsSum(items);
    if (sum && (s || T) && !itemsAddUp(items, subtotal, tax, total)) {
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
    using Doubts::withinACent;
    const auto s = Money::amountOf(subtotal);
    const auto t = Money::amountOf(tax);
    const auto T = Money::amountOf(total);
    const qsizetype n = items.size();
    const double sum = Doubts::itemsSum(items).value_or(0);

    if (!s) {
        if (T) {
            if (t)
                write(subtotal, *T - *t);
            if (n == 0)
                return;
            if (withinACent(sum, *T))
                raise(total, 0.95);
        } else if (n == 0) {
            return;
        }
        if (sum > 0 && subtotal.value.isEmpty())
            write(subtotal, sum);
        return;
    }

    if (n > 0 && withinACent(sum, *s))
        raise(subtotal, 0.95);
    if (t) {
        if (!T) {
            write(total, *s + *t);
        } else if (withinACent(*s + *t, *T)) {
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
