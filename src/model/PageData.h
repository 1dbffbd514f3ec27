#pragma once

#include "TextLine.h"

#include <QImage>
#include <QList>
#include <memory>

/// One loaded page, shared read-only between a document and the views once handed over.
struct PageData {
    QImage image; ///< the page as rendered or decoded for display; null where nothing was rendered
    QList<TextLine> lines;
};

using PagePtr = std::shared_ptr<const PageData>;
