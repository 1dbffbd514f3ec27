#pragma once

#include "model/PageData.h"

#include <QList>

namespace Pipeline {

/// `pages` with the cut recorded on the first page (PageData::pagesRead, pagesInFile) when `read` is
/// less than `inFile`: what a loader returns when a file has more pages or frames than it reads.
QList<PagePtr> noteCut(QList<PagePtr> pages, int read, int inFile);

} // namespace Pipeline
