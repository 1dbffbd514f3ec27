// The export of a run's ready documents, shared by the batch and the merge.
#include "Commands.h"
#include "StandardError.h"
#include "StandardOutput.h"

#include "export/ExportFormat.h"
#include "export/SaveFile.h"

#include <QFileInfo>

int exportResults(const BatchOptions &options, const QStringList &files,
                  const QList<Expected<Processing::Loaded>> &results, const QList<CustomFieldDef> &defs)
{
    QList<DocRecord> ready;
    bool anyFailed = false;
    for (qsizetype i = 0; i < files.size(); ++i) {
        if (const auto *loaded = std::get_if<Processing::Loaded>(&results[i]))
            ready.append({QFileInfo(files[i]).absoluteFilePath(), loaded->extraction.fields,
                          loaded->extraction.items});
        else
            anyFailed = true;
    }

    QStringList notes;
    const auto exported = Exporter::exportBytes(options.format, options.layout, ready, defs, &notes);
    for (const QString &note : std::as_const(notes))
        printError(QStringLiteral("tabrix-cli: ") + note);
    if (const auto *error = std::get_if<TabrixError>(&exported)) {
        printError(QStringLiteral("tabrix-cli: ") + error->message);
        return 1;
    }
    const QByteArray &bytes = std::get<QByteArray>(exported);
    if (options.output.isEmpty()) {
        if (const auto failure =
                writeStandardOutput(options.format == ExportFormat::json ? bytes + '\n' : bytes)) {
            printError(QStringLiteral("tabrix-cli: Export failed: ") + failure->message);
            return 1;
        }
    } else if (const auto failure = Exporter::saveFile(options.output, bytes)) {
        printError(QStringLiteral("tabrix-cli: Export failed: ") + failure->message);
        return 1;
    }
    return anyFailed ? 2 : 0;
}
