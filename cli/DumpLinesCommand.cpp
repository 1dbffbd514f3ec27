#include "Commands.h"
#include "LinesJson.h"
#include "StandardError.h"

#include "intake/Pipeline.h"

#include <cstdio>

int runDumpLines(const QString &path, RuleSet rules)
{
    // Nobody looks at the pages here: digital pages are never rasterised, recognised ones not kept.
    Pipeline::LoadOptions options;
    options.renderImages = false;
    options.rules = rules;
    const auto loaded = Pipeline::load(path, options, {});
    if (const auto *error = std::get_if<TabrixError>(&loaded)) {
        printError(path + QStringLiteral(": Failed: ") + error->message);
        return 1;
    }
    QList<TextLine> lines;
    for (const PagePtr &page : std::get<QList<PagePtr>>(loaded))
        lines += page->lines;
    const QByteArray out = LinesJson::writeLines(lines);
    std::fwrite(out.constData(), 1, size_t(out.size()), stdout);
    std::fputc('\n', stdout);
    return 0;
}
