#include "Patterns.h"

#include "Keywords.h"
#include "Vocabulary.h"

#include <algorithm>

namespace Patterns {

Shared::Shared()
    : amount(
          QStringLiteral(
              R"((?<![\d.,/])(?:[-(]?[$€£¥]?\s?(?:\d{1,3}(?:[,.]\d{3})+|\d+)[.,]\d{2}(?![\d]|[.,]\d)\)?|[$€£¥]\s?\d+(?![\d.,]\d)))"),
          // One blank (plain, no-break or narrow no-break) between groups; two blanks part the lines of a
          // row.
          QStringLiteral(
              R"((?<![\d.,/])(?:[-(]?[$€£¥]?\s?(?:\d{1,3}(?:[ \x{A0}\x{202F}]\d{3})+,\d{2}(?![\d]|[.,]\d)\)?|)"
              R"((?:\d{1,3}(?:[,.]\d{3})+|\d+)[.,]\d{2}(?![\d]|[.,]\d)\)?)|[$€£¥]\s?\d+(?![\d.,]\d)))")),
      subtotalLabel(QStringLiteral(
          R"(sub\s*-?\s*total|net\s*(amount|total)|(total|amount)\s*(before|excl\w*)\s*(tax|vat){subtotal})")),
      // The header patterns' words stand between word boundaries, so the vocabularies' words join the group.
      headerDescription(QStringLiteral(
          R"(\b(description|item|items|product|service|details|particulars|article)\b{header.desc})")),
      headerQuantity(QStringLiteral(R"(\b(qty|quantity|hours|hrs|units|pcs)\b{header.qty})")),
      headerPrice(QStringLiteral(R"(\b(price|rate|unit\s*(cost|price)|cost)\b{header.price})")),
      headerAmount(QStringLiteral(R"(\b(amount|total|line\s*total|ext|extended)\b{header.amount})"))
{
}

const Shared &shared()
{
    static const Shared patterns;
    return patterns;
}

bool isHeaderLike(const QString &text, const RuleFeatures &features)
{
    using namespace Keywords;
    const Shared &p = shared();
    // Each header pattern needs one of its words; the words spare most rows the patterns.
    const Mask words = of(text, features);
    const bool description = (words & HeaderDescription) && p.headerDescription(features).contains(text);
    const bool quantity = (words & HeaderQuantity) && p.headerQuantity(features).contains(text);
    if (!description && !quantity && !(words & HeaderPrice))
        return false;
    int hits = int(description) + int(quantity);
    if (hits < 2 && (words & HeaderPrice) && p.headerPrice(features).contains(text))
        ++hits;
    if (hits < 2 && (words & HeaderAmount) && p.headerAmount(features).contains(text))
        ++hits;
    return hits >= 2;
}

bool hasDigit(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

} // namespace Patterns
