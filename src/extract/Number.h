#pragma once

#include "RuleFeatures.h"
#include "model/Field.h"
#include "model/Row.h"

namespace Extractor {

/// The invoice, receipt or order number: the most confident of four row rules.
Field findNumber(const QList<Row> &rows, const RuleFeatures &features = RuleSet::Core);

/// Where the first labelled invoice or receipt number in `text` starts ("Rechnung Nr. 123 vom …"), or -1.
qsizetype invoiceNumberAt(const QString &text, const RuleFeatures &features);

} // namespace Extractor
