#include "PageCut.h"

namespace Pipeline {

QList<PagePtr> noteCut(QList<PagePtr> pages, int read, int inFile)
{
    if (read >= inFile || pages.isEmpty())
        return pages;
    auto first = std::make_shared<PageData>(*pages.first());
    first->pagesRead = read;
    first->pagesInFile = inFile;
    pages.first() = std::move(first);
    return pages;
}

} // namespace Pipeline
