#pragma once

#include "RuleFeatures.h"
#include "model/Field.h"
#include "model/Money.h"
#include "model/Row.h"

namespace Extractor {

/// The document's currency as an ISO 4217 code: the most frequent explicit code, else the most
/// frequent symbol (€, £, ¥, $ in that order of precedence).
///
/// With RuleFeatures::currencyEvidence: also local symbols written next to an amount (RM, Rs, ₹, S$, A$, CHF,
/// zł, and kr as `locale`'s crown), then the seller's legal form where it belongs to one country (Sdn Bhd:
/// MYR), then a lone $ as weak evidence (`locale`'s own dollar where that is a dollar, else USD), and
/// fill in `locale`'s currency at 0.3 for amounts without any mark.
Field findCurrency(const QList<Row> &rows, const RuleFeatures &features = RuleSet::Core,
                   const QLocale &locale = Money::userLocale());

} // namespace Extractor
