#include "OrgTagger.h"

#include "Regex.h"

namespace Extractor {

namespace {

// The first company form or trade word of a line. Three alternatives: forms that are unambiguous
// anywhere; short forms that are also words or codes, only as the last token after another word;
// trade words, unless a number follows them ("Store #12" is a branch number, not a name).
const Regex &orgToken()
{
    static const Regex rx(QStringLiteral(
        R"((?<![\p{L}\p{N}])(?:sdn\.?\s*bhd|bhd|pte|pvt|pty|ltd|ltda|limited|llc|l\.l\.c|llp|inc|)"
        R"(incorporated|corp|corporation|plc|gmbh|mbh|sarl|s\.a\.r\.l|s\.a\.s|s\.a|s\.p\.a|s\.r\.l|srl|)"
        R"(s\.l|b\.v|n\.v|a/s|k\.k|sp\.\s*z\s*o\.o|co\.)(?![\p{L}\p{N}]))"
        R"(|&\s*co(?![\p{L}\p{N}]))"
        R"(|(?<=[\p{L}\p{N}.,)&]\s{1,8})(?:ag|kg|ab|oy|oyj|sa|sas|spa|sl|bv|nv|kk|aps)\.?[^\p{L}\p{N}]*$)"
        R"(|(?<![\p{L}\p{N}])(?:trading|traders?|enterprises?|hardware|restaurants?|bakery|bakeries|)"
        R"(pharmacy|pharmacies|mart|supermarkets?|minimarkets?|hypermarkets?|markets?|stores?|cafe|café|)"
        R"(cafes|cafés|coffee\s*house|hotels?|motel|inn|resort|bistro|brasserie|pizzeria|grill|diner|deli|)"
        R"(kitchen|catering|canteen|bookstore|bookshop|workshop|stationery|printing|florist|boutique|salon|)"
        R"(clinic|dental|electronics?|electrical|motors|automotive|garage|petroleum|logistics|transport|)"
        R"(construction|engineering|industries|manufacturing|services|solutions|consulting|consultants|)"
        R"(technologies|systems|software|holdings|group|ventures|partners|associates|agency|supplies|supply|)"
        R"(wholesale|retail|emporium|depot|outlet|company|bros|brothers|sons|restoran|kedai|perniagaan|)"
        R"(syarikat|bäckerei|apotheke|gaststätte|boulangerie|pharmacie|librairie|épicerie|farmacia|)"
        R"(panadería|panaderia|ristorante|trattoria|tienda|apotheek|bakkerij))"
        R"((?![\p{L}\p{N}])(?!\s*(?:#|no\.?|nr\.?|number|:)?\s*\d))"));
    return rx;
}

// Labels of registration and tax numbers: "Company Reg No", "Reg. No.", "GST No", "VAT ID", "TIN:".
const Regex &registrationLabel()
{
    static const Regex rx(QStringLiteral(
        R"((?<![\p{L}\p{N}])(?:(?:company|co|business|registration|reg|regn|roc|gst|vat|sst|tax|abn|acn|)"
        R"(ein|tin|cin|uen|brn|trn|siret|siren|kvk|ust|uid|nif|cif|nip)\.?\s*(?:reg(?:istration)?\.?\s*)?)"
        R"((?:no|num|number|nr|id|#)(?!\p{L})|(?:gstin|gst|vat|sst|tin|cin|abn|acn|uen|brn|trn|ein)\s*[:#])"
        R"(|registered\s+(?:no|number|office|in)\b))"));
    return rx;
}

} // namespace

bool looksLikeOrg(const QString &text)
{
    const auto token = orgToken().match(text);
    if (!token)
        return false;
    const auto label = registrationLabel().match(text);
    return !label || token->range().loc < label->range().loc;
}

} // namespace Extractor
