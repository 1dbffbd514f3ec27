#pragma once

#include "model/RuleSet.h"

/// What the full rules add to the base rules, one named step each, decided once from the rule set. A
/// finder asks for the step it takes (`features.receiptTotals`), never for the rule set itself; the base
/// rules have every step off.
struct RuleFeatures {
    /// The rule set these were derived from; it picks the form of each built-in pattern (RulePattern).
    RuleSet rules = RuleSet::Core;

    /// Label words of other languages in the patterns and month names in dates, so a row holding no
    /// English label word may still hold a label.
    bool vocabularies = false;

    /// Amounts: groups of three digits split by blanks ("1 234,56"), and a number before "%" is a rate,
    /// not an amount.
    bool blankThousands = false;
    bool ratesAreNoAmounts = false;
    /// A row of several labels without amounts heads the amounts below it ("Total HT  TVA  Total TTC").
    bool columnLabels = false;

    /// Receipt totals: tax notes, stamps, rate breakdowns and payment rows are no totals; a rounded total
    /// is a strong one and a rounding adjustment is added to the total above it; a summary row's net
    /// amount and a zero are no totals.
    bool receiptTotals = false;
    /// The total is checked against cash minus change, subtotal plus tax and the items' sum.
    bool totalCheck = false;
    /// In a row of label and amount pairs the subtotal is the amount after its label.
    bool pairedSubtotal = false;
    /// A labelled subtotal and total imply the tax, which picks among several tax rows.
    bool impliedTax = false;

    /// Dates: a misread year of the 2100s–2900s is read as 20xx; a date given with the invoice number is
    /// the issue date.
    bool yearRepair = false;
    bool dateByNumber = false;
    /// A line holding only a number mark and a number ("N° FA-2026-0001") offers that number.
    bool markedNumbers = false;
    /// Currency from the strongest evidence: codes, local marks beside amounts, a seller's legal form.
    bool currencyEvidence = false;

    /// Vendor: the name under a seller heading ("Verkäufer"); registration lines are no names, a legal
    /// form ends a name wrapped over lines and counts for it; an organisation below the title or the
    /// addressee is the customer when one stands above.
    bool sellerHeadings = false;
    bool companyNames = false;
    bool customerBelowTitle = false;

    /// Line items: a quantity printed before the description; "key: value" lines are details, not
    /// items; a subtotal in any wording ends the table; a summary word in a header's second line
    /// ("MwSt." under "Preis") does not end it before its first item.
    bool leadingQuantity = false;
    bool itemDetailLines = false;
    bool subtotalEndsTable = false;
    bool headerSecondLine = false;

    /// Page layout: the item table read by its header's columns; taxes of several rates summed where
    /// subtotal and total imply them, a rate table read as a table; dotted dates day first, a document
    /// labelled in German or French alone reads ambiguous dates day first, a due date before the issue
    /// date is doubted; the currency of the country a page names; values failing a cross-check below
    /// green.
    bool columnItems = false;
    bool taxBySum = false;
    bool rateTables = false;
    bool dottedDayFirst = false;
    bool documentDateOrder = false;
    bool dueBeforeIssue = false;
    bool countryCurrency = false;
    bool crossCheckCaps = false;

    constexpr RuleFeatures() = default;
    /// The features of a rule set: none for the base rules, all for the full ones.
    constexpr RuleFeatures(RuleSet set) // NOLINT(google-explicit-constructor): finders take either
        : rules(set)
    {
        const bool on = set == RuleSet::Full;
        vocabularies = blankThousands = ratesAreNoAmounts = columnLabels = on;
        receiptTotals = totalCheck = pairedSubtotal = impliedTax = on;
        yearRepair = dateByNumber = markedNumbers = currencyEvidence = on;
        sellerHeadings = companyNames = customerBelowTitle = on;
        leadingQuantity = itemDetailLines = subtotalEndsTable = headerSecondLine = on;
        columnItems = taxBySum = rateTables = crossCheckCaps = on;
        dottedDayFirst = documentDateOrder = dueBeforeIssue = countryCurrency = on;
    }
};
