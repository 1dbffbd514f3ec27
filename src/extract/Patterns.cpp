#include "Patterns.h"

namespace Patterns {

const Regex &moneyRx()
{
    static const Regex rx(QStringLiteral(
        R"((?<![\d.,/])(?:[-(]?[$€£¥]?\s?(?:\d{1,3}(?:[,.]\d{3})+|\d+)[.,]\d{2}(?![\d]|[.,]\d)\)?|[$€£¥]\s?\d+(?![\d.,]\d)))"));
    return rx;
}

const Regex &trailingInt()
{
    static const Regex rx(QStringLiteral(R"((?<![\d.,])\d{1,7}\s*$)"));
    return rx;
}

const Regex &subtotalRx()
{
    static const Regex rx(QStringLiteral(
        R"(sub\s*-?\s*total|net\s*(amount|total)|(total|amount)\s*(before|excl\w*)\s*(tax|vat))"));
    return rx;
}

const Regex &hdrDesc()
{
    static const Regex rx(
        QStringLiteral(R"(\b(description|item|items|product|service|details|particulars|article)\b)"));
    return rx;
}

const Regex &hdrQty()
{
    static const Regex rx(QStringLiteral(R"(\b(qty|quantity|hours|hrs|units|pcs)\b)"));
    return rx;
}

const Regex &hdrPrice()
{
    static const Regex rx(QStringLiteral(R"(\b(price|rate|unit\s*(cost|price)|cost)\b)"));
    return rx;
}

const Regex &hdrAmt()
{
    static const Regex rx(QStringLiteral(R"(\b(amount|total|line\s*total|ext|extended)\b)"));
    return rx;
}

const Regex &dateOnly()
{
    static const Regex rx(QStringLiteral(R"(^\d{1,4}[/.\-]\d{1,2}[/.\-]\d{1,4}$)"));
    return rx;
}

bool isHeaderLike(const QString &text)
{
    int hits = 0;
    for (const Regex *rx : {&hdrDesc(), &hdrQty(), &hdrPrice(), &hdrAmt()}) {
        if (rx->contains(text) && ++hits >= 2)
            return true;
    }
    return false;
}

} // namespace Patterns
