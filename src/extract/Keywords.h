#pragma once

#include "RuleFeatures.h"

#include <QString>

/// Which finders' label patterns can match a text, decided in one pass before any pattern runs. Each
/// group below stands for the patterns of one kind of label; a pattern of the group cannot match a text
/// that holds none of the group's words (English ones, and with RuleFeatures::vocabularies the words of
/// the active vocabularies' lists the patterns gain). The words of all groups are matched together, with
/// one automaton over the text's ASCII letters folded to lower case.
namespace Keywords {

enum Group : unsigned {
    TotalLabel = 1u << 0,    ///< a grand, payable, plain, rounded total or a rounding row
    TaxLabel = 1u << 1,      ///< a tax row's label
    SubtotalLabel = 1u << 2, ///< "Subtotal", "Net amount", "Total before tax"
    SummaryRow = 1u << 3,    ///< a row that ends an item table (totals, payment, thanks)
    HeaderDescription = 1u << 4,
    HeaderQuantity = 1u << 5,
    HeaderPrice = 1u << 6,
    HeaderAmount = 1u << 7,
    VendorSkip = 1u << 8,     ///< a heading, contact or table line that names no seller
    VendorLabel = 1u << 9,    ///< "Vendor:", "Sold by:" before the seller's name
    SellerHeading = 1u << 10, ///< "Seller", "Verkäufer" above the seller's details
    NumberLabel = 1u << 11,   ///< "Invoice no.", "Order #", "Rechnungsnummer"
    DateLabel = 1u << 12,     ///< "Date", "Due date", "Rechnungsdatum"
    LegalForm = 1u << 13,     ///< a legal form found in one country only ("Sdn Bhd", "Pte Ltd")
    Divider = 1u << 14,       ///< a document title or addressee heading ("Tax invoice", "Bill to")
    Registration = 1u << 15,  ///< a registration or tax number's label ("Co. Reg", "GST ID", "SIRET")
};
using Mask = unsigned;

/// The groups whose patterns may match `text` under `features`. Text holding a character whose case
/// folding yields several characters or ASCII letters ("ß", "ſ", "ﬁ", the Kelvin sign…) gets every
/// group, so the patterns still decide with full Unicode case folding. Thread-safe; the automaton of a
/// rule set is built on first use.
Mask of(const QString &text, const RuleFeatures &features);

/// Whether `text` may match a pattern of `group`.
inline bool may(const QString &text, Group group, const RuleFeatures &features)
{
    return (of(text, features) & group) != 0;
}

} // namespace Keywords
