#pragma once

#include "model/Field.h"
#include "model/LineItem.h"

#include <QList>

namespace Extractor {

/// Cross-checks subtotal, tax and total with each other and with the line items: fills a missing one
/// from the other two and raises the confidence of values whose arithmetic agrees. Changes only the
/// values and confidences of the three fields.
void reconcile(Field &subtotal, Field &tax, Field &total, const QList<LineItem> &items);

} // namespace Extractor
