#include "PlatformText.h"

namespace PlatformText {

QString adapt(const QString &text, bool mac)
{
    if (mac)
        return text;
    QString adapted = text;
    adapted.replace(QStringLiteral("this Mac"), QStringLiteral("this computer"));
    adapted.replace(QStringLiteral("\u2318"), QStringLiteral("Ctrl+"));
    return adapted;
}

} // namespace PlatformText
