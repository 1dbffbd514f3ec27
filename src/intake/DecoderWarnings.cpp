#include "DecoderWarnings.h"

#include <QLoggingCategory>
#include <QString>

namespace Pipeline {

namespace {

QtMessageHandler previousHandler = nullptr;

bool isDecoderChatter(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (type != QtDebugMsg && type != QtInfoMsg && type != QtWarningMsg)
        return false;
    const QLatin1StringView category(context.category ? context.category : "");
    return category.startsWith(QLatin1String("qt.gui.imageio")) ||
           category.startsWith(QLatin1String("qt.imageformats")) ||
           message.startsWith(QLatin1String("libpng")) || message.startsWith(QLatin1String("libtiff")) ||
           message.startsWith(QLatin1String("TIFF"));
}

void filterDecoderChatter(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    if (!isDecoderChatter(type, context, message) && previousHandler)
        previousHandler(type, context, message);
}

} // namespace

void quietDecoderWarnings()
{
    if (!previousHandler)
        previousHandler = qInstallMessageHandler(filterDecoderChatter);
}

} // namespace Pipeline
