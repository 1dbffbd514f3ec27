#include "Vendor.h"

#include "OrgTagger.h"
#include "Patterns.h"
#include "Regex.h"
#include "Rows.h"
#include "model/Graphemes.h"

#include <algorithm>

namespace Extractor {

namespace {

const Regex &vendorLabel()
{
    static const Regex rx(QStringLiteral(
        R"(^(?:vendor|supplier|merchant|payee|sold\s*by|bill(?:ed)?\s*from|remit\s*to|from)\s*[:\-]\s*(.{2,})$)"));
    return rx;
}

const Regex &vendorSkip()
{
    static const Regex rx(QStringLiteral(
        R"(^\W*(?:tax\s+)?(?:invoice|receipt|statement|credit\s*note|quote|quotation|estimate|bill\s*to|)"
        R"(ship\s*to|sold\s*to|customer|order|page|date|due|total|amount|description|qty|quantity|tel|phone|)"
        R"(fax|e-?mail|web|www|http|thank|duplicate|original|copy|purchase|packing|balance|account|ref|no|)"
        R"(number|welcome|cashier|server|table)\b|^\s*#)"));
    return rx;
}

// Case-sensitive on purpose: a two-letter state code before a ZIP code is upper case.
const Regex &addressLike()
{
    static const Regex rx(
        QStringLiteral(R"(^\d{1,6}\s+\S+.*\b(st|street|ave|avenue|rd|road|blvd|boulevard|dr|drive|ln|lane|)"
                       R"(way|suite|ste|floor|fl)\b|\b[A-Z]{2}\s+\d{5}(-\d{4})?\b|\bP\.?O\.?\s*Box\b)"),
        false);
    return rx;
}

const Regex &orgSuffix()
{
    static const Regex rx(QStringLiteral(
        R"(\b(inc|llc|ltd|gmbh|corp|corporation|co|company|llp|plc|ag|pty|bv|oy|limited|group|holdings|)"
        R"(partners|associates|stores?|market|restaurant|cafe|café|hotel|services|solutions|studio|supply|)"
        R"(supplies|enterprises|industries|systems|technologies)\b\.?)"));
    return rx;
}

// The cheap word tests below let most lines skip the anchored patterns; the patterns still decide.
bool mayBeSkipped(const QString &text)
{
    using W = QLatin1StringView;
    return Patterns::mayContain(
               text,
               {W("#"),        W("tax"),      W("invoice"),  W("receipt"), W("statement"), W("credit"),
                W("quot"),     W("estimate"), W("bill"),     W("ship"),    W("sold"),      W("customer"),
                W("order"),    W("page"),     W("date"),     W("due"),     W("total"),     W("amount"),
                W("descr"),    W("qty"),      W("quantit"),  W("tel"),     W("phone"),     W("fax"),
                W("mail"),     W("web"),      W("www"),      W("http"),    W("thank"),     W("duplicate"),
                W("original"), W("copy"),     W("purchase"), W("packing"), W("balance"),   W("account"),
                W("ref"),      W("no"),       W("welcome"),  W("cashier"), W("server"),    W("table")}) &&
           vendorSkip().contains(text);
}

// An address needs a digit or a "Box"; the pattern is case-sensitive, so this test is exact.
bool mayBeAddress(const QString &text)
{
    return (Patterns::hasDigit(text) || text.contains(QLatin1StringView("Box"))) &&
           addressLike().contains(text);
}

bool mayBeLabel(const QString &text)
{
    using W = QLatin1StringView;
    return Patterns::mayContain(text, {W("vendor"), W("supplier"), W("merchant"), W("payee"), W("sold"),
                                       W("bill"), W("remit"), W("from")});
}

constexpr int maxCandidates = 12;

struct CharCounts {
    int letters = 0;
    int digits = 0;
};

CharCounts countChars(const QString &text)
{
    CharCounts counts;
    for (const char32_t c : text.toUcs4()) {
        if (QChar::isLetter(c))
            ++counts.letters;
        else if (QChar::isNumber(c))
            ++counts.digits;
    }
    return counts;
}

// A short, letter-rich line that is neither a heading, a contact line nor an address.
bool isCandidate(const TextLine &line)
{
    if (!(line.rect.top() < 0.45))
        return false;
    const CharCounts counts = countChars(line.text);
    if (counts.letters < 3)
        return false;
    const qsizetype length = graphemeCount(line.text);
    if (length > 60 || line.text.contains(u'@'))
        return false;
    if (!(double(counts.digits) / double(std::max<qsizetype>(length, 1)) < 0.35))
        return false;
    return !mayBeSkipped(line.text) && !mayBeAddress(line.text);
}

} // namespace

Field findVendor(const QList<TextLine> &lines)
{
    Field field = emptyField(QStringLiteral("vendor"), QStringLiteral("Vendor"));

    QList<TextLine> firstPage;
    for (const TextLine &line : lines) {
        if (line.page == 0)
            firstPage.append(line);
    }
    std::stable_sort(firstPage.begin(), firstPage.end(), topThenLeft);

    for (const TextLine &line : firstPage) {
        if (!mayBeLabel(line.text))
            continue;
        if (const auto m = vendorLabel().match(line.text)) {
            field.value = m->captured(line.text, 1).trimmed();
            field.confidence = 0.9;
            field.box = PageBox{0, line.rect};
            return field;
        }
    }

    QList<TextLine> candidates;
    for (const TextLine &line : firstPage) {
        if (isCandidate(line)) {
            candidates.append(line);
            if (candidates.size() == maxCandidates)
                break;
        }
    }
    if (candidates.isEmpty())
        return field;

    double maxH = 0;
    for (const TextLine &line : candidates)
        maxH = std::max(maxH, line.rect.height());

    qsizetype best = -1;
    double bestScore = 0;
    for (qsizetype i = 0; i < candidates.size(); ++i) {
        const QString &text = candidates[i].text;
        double score = 1.0 / double(i + 1);
        if (orgSuffix().contains(text))
            score += 3.0;
        if (looksLikeOrg(text))
            score += 2.0;
        // Lines without height (all zero) get no height bonus rather than a NaN confidence.
        if (maxH > 0)
            score += 2.0 * (candidates[i].rect.height() / maxH);
        if (best < 0 || score > bestScore) {
            best = i;
            bestScore = score;
        }
    }
    field.value = candidates[best].text;
    field.confidence = std::min(0.3 + 0.1 * bestScore, 0.92);
    field.box = PageBox{0, candidates[best].rect};
    return field;
}

} // namespace Extractor
