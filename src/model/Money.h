#pragma once

#include "Field.h"

#include <QLocale>
#include <QString>
#include <optional>

/// Amount text to numbers and back. Amounts are doubles; the currency is a separate field.
/// A double holds the binary value nearest the amount read, so "2.675" is held as 2.67499…. Nothing rounds
/// while amounts are added or compared (compare them in whole cents, Doubts::withinACent); an amount is
/// rounded to two decimals only when it is written as text, from the value held: `twoDecimals` rounds
/// exact ties to even as printf does (0.125 gives "0.12"), `pretty` rounds them away from zero as QLocale
/// does (0.125 gives "0.13").
namespace Money {

/// The amount in `text`, or nothing when it holds no usable number. Accepts grouping with "," or ".",
/// currency symbols and letters around the digits, a leading "-" or surrounding brackets for negatives.
/// A lone separator followed by exactly three digits is a thousands separator ("1.234" is 1234).
std::optional<double> parse(const QString &text);

/// The decimal mark of `digits` (digits with "." and "," between them): the later of the two kinds when
/// both appear; a kind that appears once, unless exactly three digits follow it, where it is a thousands
/// separator unless it is `loneBeforeThree` (a locale's decimal point); none otherwise.
QChar decimalMark(QStringView digits, QChar loneBeforeThree = QChar());

/// Locale-formatted amount with two decimals and grouping, for display.
QString pretty(double value, const QLocale &locale);
QString pretty(double value);

/// Compact quantity text: whole numbers without a point, otherwise up to three decimals.
/// `quantity` must be finite and fit a 64-bit integer when rounded.
QString formatQuantity(double quantity);

/// The amount a field holds (parse of its value); nothing when the field is empty or holds no number.
std::optional<double> amountOf(const Field &field);

/// The machine form of extracted amounts: two decimals, a point, no grouping, whatever the locale.
QString twoDecimals(double value);

/// The user's locale: the system's, or English (United States) when the system says C/POSIX.
QLocale userLocale();

} // namespace Money
