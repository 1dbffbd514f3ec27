#include "AmountRepair.h"

namespace AmountRepair {

namespace {

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

// Characters that join numbers into dates, times and version-like figures.
bool joinsFigures(QChar c)
{
    return c == u'.' || c == u'/' || c == u':' || c == u'-';
}

// Whether the digits ending just before `end` are the last part of a longer figure (a date such as
// «19. 10» followed by «. 18», or «12.05»), so that the point after them ends a date part, not a whole
// number.
bool continuesFigure(const QString &text, qsizetype end)
{
    qsizetype start = end;
    while (start > 0 && isDigit(text[start - 1]))
        --start;
    qsizetype before = start;
    while (before > 0 && text[before - 1] == u' ')
        --before;
    if (before == 0 || !joinsFigures(text[before - 1]))
        return false;
    // A minus sign before the amount («-5. 59») is not a joiner; one after a digit («19-10. 18») is.
    return text[before - 1] != u'-' || (before >= 2 && isDigit(text[before - 2]));
}

} // namespace

QString joinedDecimals(const QString &text)
{
    QString out = text;
    for (qsizetype at = 1; at < out.size(); ++at) {
        if (out[at] != u'.' || !isDigit(out[at - 1]))
            continue;
        qsizetype digits = at + 1;
        while (digits < out.size() && out[digits] == u' ')
            ++digits;
        if (digits == at + 1 || digits + 2 > out.size() || !isDigit(out[digits]) || !isDigit(out[digits + 1]))
            continue;
        const qsizetype after = digits + 2;
        if (after < out.size() && (isDigit(out[after]) || joinsFigures(out[after]) || out[after] == u','))
            continue;
        if (continuesFigure(out, at))
            continue;
        out.remove(at + 1, digits - at - 1);
    }
    return out;
}

} // namespace AmountRepair
