#pragma once

#include "LineItem.h"

#include <QDate>
#include <QLocale>
#include <QString>
#include <optional>

/// Values typed by hand into the review form: what each box takes, and the form exports write it in.
/// Amounts are read in the user's locale or in a document's form ("1.234,56", "1,234.56", "€ 12,50",
/// "(3.00)"), dates as ISO, numerically in the locale's order, or with month names (English or the
/// locale's); an empty box is always fine.
namespace TypedValue {

enum class Kind { Text, Amount, Quantity, Date };

/// The kind of the built-in field keyed `key` ("subtotal", "tax", "total" are amounts, "date" and
/// "dueDate" dates); any other field is text.
Kind ofField(const QString &key);
/// The kind of a line item's column.
Kind ofColumn(LineItem::Column column);

/// `text` in the form exports write: amounts with two decimals and a point ("1234.56"), quantities
/// compact ("2", "1.5"), dates ISO ("2024-03-05"), text and empty boxes as they are; nothing when
/// `text` is not a `kind`.
std::optional<QString> exported(const QString &text, Kind kind, const QLocale &locale);

/// Why `text` is not a `kind`, in a sentence for the form; empty when it is one.
QString problem(const QString &text, Kind kind, const QLocale &locale);

/// The amount in `text` as typed (see above), or nothing when it holds anything but the number, its
/// sign, grouping, a currency symbol or a three-letter upper-case currency code.
std::optional<double> amount(const QString &text, const QLocale &locale);

/// The date in `text` as typed (see above), or nothing.
std::optional<QDate> date(const QString &text, const QLocale &locale);

} // namespace TypedValue
