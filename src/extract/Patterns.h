#pragma once

#include "Regex.h"

// The built-in patterns shared by several finders, compiled once per process on first use
// (case-insensitive). Patterns used by one finder only live in that finder's file.
namespace Patterns {

const Regex &moneyRx();
const Regex &trailingInt();
const Regex &subtotalRx();
const Regex &hdrDesc();
const Regex &hdrQty();
const Regex &hdrPrice();
const Regex &hdrAmt();
const Regex &dateOnly();

/// True when at least two of the four table-header patterns match: the row looks like a table header.
bool isHeaderLike(const QString &text);

} // namespace Patterns
