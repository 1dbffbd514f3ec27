#pragma once

#include "Regex.h"
#include "model/RuleSet.h"

#include <initializer_list>

// The built-in patterns shared by several finders, compiled once per process on first use
// (case-insensitive). Patterns used by one finder only live in that finder's file.
namespace Patterns {

/// Amounts; the full rules also read groups of three digits split by a blank before a decimal comma
/// ("1 234,56", as French invoices print them).
const Regex &amount(RuleSet rules = RuleSet::Core);
const Regex &trailingInteger();
const Regex &subtotalLabel(RuleSet rules = RuleSet::Core);
const Regex &headerDescription(RuleSet rules = RuleSet::Core);
const Regex &headerQuantity(RuleSet rules = RuleSet::Core);
const Regex &headerPrice(RuleSet rules = RuleSet::Core);
const Regex &headerAmount(RuleSet rules = RuleSet::Core);
const Regex &dateOnly();

/// True when at least two of the four table-header patterns match: the row looks like a table header.
bool isHeaderLike(const QString &text, RuleSet rules = RuleSet::Core);

/// Whether `text` holds a decimal digit (what `\d` matches): a cheap test before patterns that need one.
bool hasDigit(const QString &text);

/// A cheap test run before a case-insensitive pattern that cannot match without one of `words`
/// (lower-case ASCII): false only when none of them occurs in `text`, ignoring case. Text holding a
/// character whose case folding yields ASCII letters ("ß", "ſ", "ﬁ", the Kelvin sign…) always passes,
/// so the pattern still decides with full Unicode case folding.
bool mayContain(const QString &text, std::initializer_list<QLatin1StringView> words);

} // namespace Patterns
