#pragma once

#include "Regex.h"
#include "Vocabulary.h"
#include "model/RuleSet.h"

// The built-in patterns shared by several finders and the cheap test run before patterns needing a digit.
// Patterns used by one finder only live in that finder's file.
namespace Patterns {

/// The one instance of a finder's struct of patterns, all compiled together on first use (thread-safe, as
/// every function-local static is).
template <class Compiled> const Compiled &compiledOnce()
{
    static const Compiled compiled;
    return compiled;
}

/// The patterns several finders read (case-insensitive).
struct Shared {
    /// Amounts; with RuleFeatures::blankThousands also groups of three digits split by a blank before a
    /// decimal comma ("1 234,56", as French invoices print them).
    RulePattern amount;
    /// A subtotal label ("Subtotal", "Net amount", "Total before tax").
    RulePattern subtotalLabel;
    /// The words heading an item table's description, quantity, unit price and amount columns.
    RulePattern headerDescription, headerQuantity, headerPrice, headerAmount;

    Shared();
};

/// The shared patterns, compiled together on the first call (from any thread) and kept for the process.
const Shared &shared();

/// True when at least two of the four table-header patterns match: the row looks like a table header.
bool isHeaderLike(const QString &text, const RuleFeatures &features = RuleSet::Core);

/// Whether `text` holds a decimal digit (what `\d` matches): a cheap test before patterns that need one.
bool hasDigit(const QString &text);

} // namespace Patterns
