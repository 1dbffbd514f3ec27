#include "BatchNotices.h"

#include "Commands.h"
#include "extract/Regex.h"
#include "intake/NativeNames.h"

#include <QLocale>

BatchNotices::BatchNotices(const QList<CustomFieldDef> &defs, bool quiet) : m_defs(defs), m_quiet(quiet)
{
    for (const CustomFieldDef &def : defs) {
        const QString pattern = def.pattern.trimmed();
        const QString error = def.isRegex && !pattern.isEmpty() ? Regex::compileError(pattern) : QString();
        if (!error.isEmpty())
            printError(QStringLiteral("Custom field \"%1\": the pattern %2 does not compile (%3); its column "
                                      "stays empty")
                           .arg(Pipeline::displayName(def.name), Pipeline::displayName(def.pattern), error));
    }
}

void BatchNotices::read(const QString &path, const Processing::Loaded &loaded)
{
    for (const QUuid &id : loaded.extraction.slowPatterns) {
        if (m_toldSlow.contains(id))
            continue;
        m_toldSlow.insert(id);
        for (const CustomFieldDef &def : std::as_const(m_defs)) {
            if (def.id == id)
                printError(QStringLiteral(
                               "Custom field \"%1\": the pattern %2 is too slow; it was stopped and, "
                               "with the patterns after it, left empty where it ran too long (first in %3)")
                               .arg(def.name, def.pattern, Pipeline::displayName(path)));
        }
    }
    if (!m_quiet && loaded.pagesInFile > loaded.pagesRead) {
        const QLocale english(QLocale::English, QLocale::UnitedStates);
        printError(QStringLiteral("%1: read the first %2 of %3 pages")
                       .arg(Pipeline::displayName(path), english.toString(loaded.pagesRead),
                            english.toString(loaded.pagesInFile)));
    }
}
