#include "Vendor.h"

#include "Keywords.h"
#include "OrgTagger.h"
#include "Patterns.h"
#include "Regex.h"
#include "Rows.h"
#include "Vocabulary.h"
#include "model/Graphemes.h"

#include <algorithm>
#include <cmath>

namespace Extractor {

namespace {

struct VendorPatterns {
    RulePattern vendorLabel{QStringLiteral(
        R"(^(?:vendor|supplier|merchant|payee|sold\s*by|bill(?:ed)?\s*from|remit\s*to|from{vendor.label})\s*[:\-]\s*(.{2,})$)")};
    RulePattern vendorSkip{QStringLiteral(
        R"(^\W*(?:tax\s+)?(?:invoice|receipt|statement|credit\s*note|quote|quotation|estimate|bill\s*to|)"
        R"(ship\s*to|sold\s*to|customer|order|page|date|due|total|amount|description|qty|quantity|tel|phone|)"
        R"(fax|e-?mail|web|www|http|thank|duplicate|original|copy|purchase|packing|balance|account|ref|no|)"
        R"(number|welcome|cashier|server|table{vendor.skip})\b|^\s*#)")};
    // A section heading naming the seller on a line of its own ("Verkäufer", "Émetteur", "Seller"); the
    // name follows below it.
    RulePattern sellerHeading{
        QStringLiteral(R"(^\W*(?:(?!)|seller|supplier|vendor{vendor.heading})\s*:?\s*$)")};
    // A name field inside the seller's section ("Name: Muster GmbH", "Raison sociale : …").
    Regex nameField{QStringLiteral(
        R"(^\s*(?:name|company|firma|firmenname|nom|raison\s*sociale|naam|bedrijfsnaam|nombre|raz[oó]n\s*social|)"
        R"(nome|ragione\s*sociale|denominazione)\s*:\s*(.*)$)")};
    // Case-sensitive on purpose: a two-letter state code before a ZIP code is upper case.
    Regex addressLike{
        QStringLiteral(R"(^\d{1,6}\s+\S+.*\b(st|street|ave|avenue|rd|road|blvd|boulevard|dr|drive|ln|lane|)"
                       R"(way|suite|ste|floor|fl)\b|\b[A-Z]{2}\s+\d{5}(-\d{4})?\b|\bP\.?O\.?\s*Box\b)"),
        false};
    Regex organisationSuffix{QStringLiteral(
        R"(\b(inc|llc|ltd|gmbh|corp|corporation|co|company|llp|plc|ag|pty|bv|oy|limited|group|holdings|)"
        R"(partners|associates|stores?|market|restaurant|cafe|café|hotel|services|solutions|studio|supply|)"
        R"(supplies|enterprises|industries|systems|technologies)\b\.?)")};
    // Registration and tax-number lines name the company's number, never the company: "Co. Reg: 123-X",
    // "GST ID: 0012", "USt-IdNr.", "SIRET", "KvK", or a bracketed registration number alone ("(123456-X)").
    Regex registrationLine{QStringLiteral(
        R"(\b(co\.?\s*reg|company\s*(reg|no\b)|reg(istration|n)?\.?\s*(no|number)\b|br\s*no\b|roc\s*no\b|)"
        R"((gst|sst|vat|tax)\s*(id|no|reg)\b|ust\.?\s*-?\s*id|siret|siren|kvk\b|uen\b|abn\b)|)"
        R"(^\W*\(?\s*\d[\d\s-]{4,}\s*-?\s*[a-z]?\s*\)?\W*$)")};
    // The legal forms that end a company's name, written together or across a wrapped line ("… SDN BHD").
    Regex legalForm{QStringLiteral(
        R"((?<![\w/])(sdn\.?\s*bhd|bhd|s/b|pte\.?\s*ltd|pvt\.?\s*ltd|pty\.?\s*ltd|ltd|limited|llc|llp|inc|plc|)"
        R"(gmbh|ag|kg|sarl|sas|s\.a\.?|b\.\s*v|n\.\s*v|s\.\s*l|s\.\s*p\.\s*a|s\.\s*r\.\s*l|corp|)"
        R"(corporation)\b\.?)")};
    // A document title or an addressee heading: the customer's details may follow it, the seller's come
    // before it.
    Regex divider{QStringLiteral(
        R"(^\W*((simplified\s+)?tax\s+invoice|invoice|bill\s*to|sold\s*to|ship\s*to|deliver(y|ed)?\s*to|)"
        R"(customer)\b)")};
};

const VendorPatterns &patterns()
{
    return Patterns::compiledOnce<VendorPatterns>();
}

// The label words let most lines skip the anchored patterns; the patterns still decide.
bool mayBeSkipped(const QString &text, const RuleFeatures &features)
{
    return Keywords::may(text, Keywords::VendorSkip, features) &&
           patterns().vendorSkip(features).contains(text);
}

// A registration line names its number's label, or is a bracketed number alone (a digit and at most
// one letter).
bool isRegistrationLine(const QString &text, const RuleFeatures &features)
{
    const auto letters = std::count_if(text.begin(), text.end(), [](QChar c) { return c.isLetter(); });
    return ((letters <= 1 && Patterns::hasDigit(text)) ||
            Keywords::may(text, Keywords::Registration, features)) &&
           patterns().registrationLine.contains(text);
}

// An address needs a digit or a "Box"; the pattern is case-sensitive, so this test is exact.
bool mayBeAddress(const QString &text)
{
    return (Patterns::hasDigit(text) || text.contains(QLatin1StringView("Box"))) &&
           patterns().addressLike.contains(text);
}

bool mayBeLabel(const QString &text, const RuleFeatures &features)
{
    return Keywords::may(text, Keywords::VendorLabel, features);
}

// A name wrapped over lines: the next lines directly below, as tall, until one holds the legal form
// that ends the name (at most two more lines).
TextLine joinWrapped(const QList<TextLine> &page, qsizetype at, const RuleFeatures &features)
{
    const VendorPatterns &p = patterns();
    TextLine joined = page[at];
    if (p.legalForm.contains(joined.text))
        return joined;
    const TextLine *last = &page[at];
    for (qsizetype i = at + 1; i < page.size() && i <= at + 2; ++i) {
        const TextLine &next = page[i];
        const double h = last->rect.height();
        const bool below =
            next.rect.top() > last->rect.top() + 0.5 * h && next.rect.top() - last->rect.bottom() < 0.8 * h;
        const bool asTall = next.rect.height() > 0.65 * h && next.rect.height() < 1.5 * h;
        if (!below || !asTall || isRegistrationLine(next.text, features) || Patterns::hasDigit(next.text))
            return page[at];
        joined.text += u' ' + next.text.trimmed();
        joined.rect = unitedRect(joined.rect, next.rect);
        if (p.legalForm.contains(next.text))
            return joined;
        last = &next;
    }
    return page[at];
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
bool isCandidate(const TextLine &line, const RuleFeatures &features)
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
    return !mayBeSkipped(line.text, features) && !mayBeAddress(line.text);
}

// The value of a name field: the line's own text after the label, or the line to its right when the
// label stands alone ("Name:" and "Muster GmbH" as two lines of one row).
std::optional<TextLine> nameFieldValue(const QList<TextLine> &page, const TextLine &line)
{
    const auto m = patterns().nameField.match(line.text);
    if (!m)
        return std::nullopt;
    const QString value = m->captured(line.text, 1).trimmed();
    if (!value.isEmpty())
        return TextLine{value, line.rect, line.page};
    const TextLine *right = nullptr;
    for (const TextLine &other : page) {
        const bool sameRow =
            std::abs(other.rect.center().y() - line.rect.center().y()) < line.rect.height() * 0.5;
        if (sameRow && other.rect.left() >= line.rect.right() &&
            (!right || other.rect.left() < right->rect.left()))
            right = &other;
    }
    return right ? std::optional<TextLine>(*right) : std::nullopt;
}

// The name under a seller heading: the first of the next few lines below it, in its column, that reads
// as a name (a "Name:" field gives its value). A buyer's heading or another field ends the search.
std::optional<Field> nameUnderHeading(const QList<TextLine> &page, const RuleFeatures &features)
{
    for (qsizetype h = 0; h < page.size(); ++h) {
        if (!Keywords::may(page[h].text, Keywords::SellerHeading, features) ||
            !patterns().sellerHeading(features).contains(page[h].text))
            continue;
        const QRectF &heading = page[h].rect;
        int looked = 0;
        for (qsizetype i = h + 1; i < page.size() && looked < 4; ++i) {
            const TextLine &line = page[i];
            const bool sameColumn = line.rect.left() < heading.right() && line.rect.right() > heading.left();
            if (!sameColumn || line.rect.top() < heading.center().y())
                continue;
            ++looked;
            std::optional<TextLine> name = nameFieldValue(page, line);
            if (!name && line.text.contains(u':'))
                continue;
            if (!name)
                name = line;
            // Where on the page the name stands does not matter here: the heading placed it.
            const TextLine unplaced{name->text, QRectF(0, 0, name->rect.width(), name->rect.height()), 0};
            if (!isCandidate(unplaced, features))
                break;
            Field field = emptyField(QStringLiteral("vendor"), QStringLiteral("Vendor"));
            field.value = name->text.trimmed();
            field.confidence = 0.8;
            field.box = PageBox{0, name->rect};
            return field;
        }
    }
    return std::nullopt;
}

} // namespace

Field findVendor(const QList<TextLine> &lines, const RuleFeatures &features)
{
    const VendorPatterns &p = patterns();
    Field field = emptyField(QStringLiteral("vendor"), QStringLiteral("Vendor"));

    QList<TextLine> firstPage;
    for (const TextLine &line : lines) {
        if (line.page == 0)
            firstPage.append(line);
    }
    std::stable_sort(firstPage.begin(), firstPage.end(), topThenLeft);

    for (const TextLine &line : firstPage) {
        if (!mayBeLabel(line.text, features))
            continue;
        if (const auto m = p.vendorLabel(features).match(line.text)) {
            field.value = m->captured(line.text, 1).trimmed();
            field.confidence = 0.9;
            field.box = PageBox{0, line.rect};
            return field;
        }
    }

    if (features.sellerHeadings) {
        if (auto named = nameUnderHeading(firstPage, features))
            return *named;
    }

    QList<TextLine> candidates;
    double dividerTop = 2;
    for (qsizetype i = 0; i < firstPage.size(); ++i) {
        const TextLine &line = firstPage[i];
        if (features.customerBelowTitle && dividerTop > 1 &&
            Keywords::may(line.text, Keywords::Divider, features) && p.divider.contains(line.text))
            dividerTop = line.rect.top();
        if (isCandidate(line, features) &&
            !(features.companyNames && isRegistrationLine(line.text, features))) {
            candidates.append(features.companyNames ? joinWrapped(firstPage, i, features) : line);
            if (candidates.size() == maxCandidates)
                break;
        }
    }
    if (candidates.isEmpty())
        return field;
    // The seller prints its name above the title or the addressee; an organisation below them is the
    // customer when one stands above.
    // Each candidate's legal form and organisation look, read once.
    QList<bool> legal, org;
    for (const TextLine &c : candidates) {
        legal.append((features.companyNames || features.customerBelowTitle) && p.legalForm.contains(c.text));
        org.append(looksLikeOrg(c.text));
    }
    bool orgAboveDivider = false;
    for (qsizetype i = 0; i < candidates.size() && features.customerBelowTitle && !orgAboveDivider; ++i)
        orgAboveDivider = candidates[i].rect.top() < dividerTop && (legal[i] || org[i]);

    double maxH = 0;
    for (const TextLine &line : candidates)
        maxH = std::max(maxH, line.rect.height());

    qsizetype best = -1;
    double bestScore = 0;
    for (qsizetype i = 0; i < candidates.size(); ++i) {
        const QString &text = candidates[i].text;
        double score = 1.0 / double(i + 1);
        if (p.organisationSuffix.contains(text))
            score += 3.0;
        if (org[i])
            score += 2.0;
        // Lines without height (all zero) get no height bonus rather than a NaN confidence.
        if (maxH > 0)
            score += 2.0 * (candidates[i].rect.height() / maxH);
        if (features.companyNames && legal[i])
            score += 1.0;
        if (features.customerBelowTitle && orgAboveDivider && candidates[i].rect.top() > dividerTop)
            score -= 10.0;
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
