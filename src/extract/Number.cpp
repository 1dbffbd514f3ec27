#include "Number.h"

namespace Extractor {

Field findNumber(const QList<Row> &)
{
    return emptyField(QStringLiteral("number"), QStringLiteral("Invoice / receipt no."));
}

} // namespace Extractor
