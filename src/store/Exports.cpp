#include "Exports.h"

#include "export/Csv.h"
#include "export/ExportText.h"
#include "export/SaveFile.h"

namespace {

QString filterOf(ExportFormat format)
{
    switch (format) {
    case ExportFormat::csv:
        return QStringLiteral("CSV (*.csv)");
    case ExportFormat::json:
        return QStringLiteral("JSON (*.json)");
    case ExportFormat::xlsx:
        return QStringLiteral("Excel workbook (*.xlsx)");
    default:
        return QString();
    }
}

QString fileNameOf(ExportFormat format, RowLayout layout)
{
    switch (format) {
    case ExportFormat::json:
        return ExportText::jsonFileName();
    case ExportFormat::xlsx:
        return ExportText::xlsxFileName();
    default:
        return ExportText::csvFileName(layout);
    }
}

} // namespace

QList<DocRecord> Exports::approvedRecords() const
{
    QList<DocRecord> records;
    for (const DocPtr &d : m_batch.approvedDocs())
        records.append(d->record());
    return records;
}

QString Exports::save(const QString &name, const QString &filter, const Write &write, bool *written)
{
    if (written)
        *written = false;
    if (!m_ui)
        return QString();
    const QString path = m_ui->chooseFileToSave(name, filter);
    if (path.isEmpty())
        return QString();
    if (const auto error = write(path))
        return ExportText::exportFailed(error->message);
    if (written)
        *written = true;
    return QString();
}

QString Exports::exportAs(ExportFormat format, RowLayout layout)
{
    // Taken before the dialog opens: the file holds the documents as they were when asked for.
    const QList<DocRecord> docs = approvedRecords();
    if (docs.isEmpty())
        return ExportText::nothingApproved();
    bool written = false;
    QString message = save(
        fileNameOf(format, layout), filterOf(format),
        [&](const QString &path) -> std::optional<TabrixError> {
            const Expected<QByteArray> bytes = Exporter::exportBytes(format, layout, docs, m_fields.defs());
            if (const auto *error = std::get_if<TabrixError>(&bytes))
                return *error;
            return Exporter::saveFile(path, std::get<QByteArray>(bytes));
        },
        &written);
    if (written)
        markExported();
    return message;
}

QString Exports::copyTSV(RowLayout layout)
{
    const QList<DocRecord> docs = approvedRecords();
    if (docs.isEmpty())
        return ExportText::nothingApproved();
    if (m_ui)
        m_ui->setClipboardText(Exporter::tsv(Exporter::table(layout, docs, m_fields.defs())));
    return ExportText::copied(docs.size());
}

QList<DocPtr> Exports::unexportedApproved() const
{
    QList<DocPtr> docs;
    for (const DocPtr &d : m_batch.approvedDocs()) {
        const auto exported = m_exported.constFind(d->id());
        if (exported == m_exported.cend() || exported->fields != d->fields() || exported->items != d->items())
            docs.append(d);
    }
    return docs;
}

void Exports::markExported()
{
    // The clipboard does not count: on X11 its contents leave with the program.
    for (const DocPtr &d : m_batch.approvedDocs()) {
        m_exported.insert(d->id(), {d->fields(), d->items()});
        m_batch.keepExported(d);
    }
}

void Exports::restore(const QHash<QUuid, std::pair<QList<Field>, QList<LineItem>>> &marks)
{
    m_exported.clear();
    for (auto mark = marks.cbegin(); mark != marks.cend(); ++mark)
        m_exported.insert(mark.key(), {mark->first, mark->second});
}
