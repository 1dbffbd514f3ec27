#include "Processing.h"

namespace Processing {

Loader pipelineLoader(Pipeline::LoadOptions options)
{
    return [options](const QString &path, const Pipeline::Report &report) {
        return Pipeline::load(path, options, report);
    };
}

Expected<Loaded> run(const QString &path, const QList<CustomFieldDef> &customFields,
                     const Pipeline::Report &report, const Loader &loader, RuleSet rules)
{
    Expected<QList<PagePtr>> pages = loader(path, report);
    if (auto *error = std::get_if<TabrixError>(&pages))
        return *error;

    Loaded loaded;
    loaded.pages = std::move(std::get<QList<PagePtr>>(pages));
    if (!loaded.pages.isEmpty() && loaded.pages.first()) {
        loaded.pagesRead = loaded.pages.first()->pagesRead;
        loaded.pagesInFile = loaded.pages.first()->pagesInFile;
    }
    if (report)
        report(DocStatus::Extracting, 0.92);

    QList<TextLine> lines;
    for (const PagePtr &page : loaded.pages) {
        if (page)
            lines += page->lines;
    }
    loaded.extraction = Extractor::extract(lines, customFields, rules);
    return loaded;
}

} // namespace Processing
