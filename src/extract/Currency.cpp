#include "Currency.h"

namespace Extractor {

Field findCurrency(const QList<Row> &)
{
    return emptyField(QStringLiteral("currency"), QStringLiteral("Currency"));
}

} // namespace Extractor
