#include "Vendor.h"

namespace Extractor {

Field findVendor(const QList<TextLine> &)
{
    return emptyField(QStringLiteral("vendor"), QStringLiteral("Vendor"));
}

} // namespace Extractor
