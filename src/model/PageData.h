#pragma once

#include "TextLine.h"

#include <QImage>
#include <QList>
#include <memory>

/// One loaded page, shared read-only between a document and the views once handed over.
struct PageData {
    QImage image; ///< the page as rendered or decoded for display; null where nothing was rendered
    QList<TextLine> lines;
    /// On the first page of a file cut at the loader's limit: pages (or frames) read and in the file.
    /// Both 0 when the whole file was read.
    int pagesRead = 0;
    int pagesInFile = 0;
};

using PagePtr = std::shared_ptr<const PageData>;
