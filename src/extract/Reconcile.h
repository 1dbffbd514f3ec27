#pragma once

#include "model/Field.h"
#include "model/LineItem.h"

#include <QList>

namespace Extractor {

/// Cross-checks subtotal, tax and total with each other and with the line items: fills a missing one
/// from the other two and raises the confidence of values whose arithmetic agrees. Changes only the
/// values and confidences of the three fields.
void reconcile(Field &subtotal, Field &tax, Field &total, const QList<LineItem> &items);

/// Whether the items' amounts add up to the subtotal, to the total less the tax, or to the total.
bool itemsAddUp(const QList<LineItem> &items, const Field &subtotal, const Field &tax, const Field &total);

/// RuleFeatures::crossCheckCaps, after reconcile: no value that fails a check it can be put to stays
/// confident (0.7 or more). The items' amounts must add up to the subtotal, to the total less the tax or to
/// the total; subtotal plus tax must make the total, and where they do not, the subtotal and the tax are
/// doubted (the subtotal not when the items confirm it). Doubted values are capped at 0.6; nothing else
/// changes.
void capFailedChecks(Field &subtotal, Field &tax, const Field &total, QList<LineItem> &items);

} // namespace Extractor
