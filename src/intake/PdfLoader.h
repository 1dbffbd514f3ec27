#pragma once

#include "LoadOptions.h"

#include "model/PageData.h"
#include "model/TabrixError.h"

#include <QList>
#include <QString>

namespace Pipeline {

/// Loads a PDF from the file's bytes: at most 40 pages, each rendered at 2400 px on its longer side (at most
/// 4× magnified), digital text where an upright page has at least 25 characters of it, recognition otherwise.
/// Fails with "Can't open PDF", "PDF is password protected", "PDF has no pages", "Couldn't render PDF
/// pages" or the recogniser's "Text recognition failed: …".
Expected<QList<PagePtr>> loadPDF(const QByteArray &bytes, const LoadOptions &options, const Report &report);

} // namespace Pipeline
