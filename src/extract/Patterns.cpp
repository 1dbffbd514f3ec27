#include "Patterns.h"

#include "Vocabulary.h"

#include <QVarLengthArray>
#include <algorithm>
#include <string_view>

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
    const Shared &p = shared();
    // Other languages' header words escape the English word tests below.
    if (features.vocabularies) {
        const int hits = int(p.headerDescription(features).contains(text)) +
                         int(p.headerQuantity(features).contains(text)) +
                         int(p.headerPrice(features).contains(text)) +
                         int(p.headerAmount(features).contains(text));
        return hits >= 2;
    }
    using W = QLatin1StringView;
    // Each header pattern needs one of its words; the cheap test spares most rows the patterns.
    const bool description = mayContain(text, {W("descr"), W("item"), W("product"), W("service"), W("detail"),
                                               W("particular"), W("article")}) &&
                             p.headerDescription(features).contains(text);
    const bool quantity =
        mayContain(text, {W("qty"), W("quantit"), W("hour"), W("hrs"), W("unit"), W("pcs")}) &&
        p.headerQuantity(features).contains(text);
    if (!description && !quantity && !mayContain(text, {W("price"), W("rate"), W("cost")}))
        return false;
    int hits = int(description) + int(quantity);
    if (hits < 2 && mayContain(text, {W("price"), W("rate"), W("cost")}) &&
        p.headerPrice(features).contains(text))
        ++hits;
    if (hits < 2 && mayContain(text, {W("amount"), W("total"), W("ext")}) &&
        p.headerAmount(features).contains(text))
        ++hits;
    return hits >= 2;
}

bool hasDigit(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.isDigit(); });
}

bool mayContain(const QString &text, std::initializer_list<QLatin1StringView> words)
{
    QVarLengthArray<char, 256> folded(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const char16_t u = text[i].unicode();
        if (u < 0x80) {
            folded[i] = char(u >= 'A' && u <= 'Z' ? u + ('a' - 'A') : u);
            continue;
        }
        if (u == 0x00DF || u == 0x0130 || u == 0x017F || u == 0x1E9E || u == 0x212A ||
            (u >= 0x1E96 && u <= 0x1E9A) || (u >= 0xFB00 && u <= 0xFB06))
            return true;
        folded[i] = char(0x80); // matches no ASCII word
    }
    const std::string_view haystack(folded.constData(), size_t(folded.size()));
    for (QLatin1StringView word : words) {
        if (haystack.find(std::string_view(word.data(), size_t(word.size()))) != std::string_view::npos)
            return true;
    }
    return false;
}

} // namespace Patterns
