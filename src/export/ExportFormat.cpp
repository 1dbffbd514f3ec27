#include "ExportFormat.h"

#include "Csv.h"
#include "JsonExport.h"
#include "Xlsx.h"

std::optional<ExportFormat> exportFormatNamed(const QString &name)
{
    if (name == QLatin1String("csv"))
        return ExportFormat::csv;
    if (name == QLatin1String("tsv"))
        return ExportFormat::tsv;
    if (name == QLatin1String("json"))
        return ExportFormat::json;
    if (name == QLatin1String("xlsx"))
        return ExportFormat::xlsx;
    return std::nullopt;
}

std::optional<RowLayout> rowLayoutNamed(const QString &name)
{
    if (name == QLatin1String("document"))
        return RowLayout::perDocument;
    if (name == QLatin1String("line-item"))
        return RowLayout::perLineItem;
    return std::nullopt;
}

namespace Exporter {

Table table(RowLayout layout, const QList<DocRecord> &docs, const QList<CustomFieldDef> &defs)
{
    return layout == RowLayout::perDocument ? documents(docs, defs) : lineItems(docs);
}

Expected<QByteArray> exportBytes(ExportFormat format, RowLayout layout, const QList<DocRecord> &docs,
                                 const QList<CustomFieldDef> &defs, QStringList *notes)
{
    switch (format) {
    case ExportFormat::csv:
        return csv(table(layout, docs, defs)).toUtf8();
    case ExportFormat::tsv:
        return tsv(table(layout, docs, defs)).toUtf8();
    case ExportFormat::json:
        return json(docs, defs);
    case ExportFormat::xlsx: {
        qsizetype cut = 0;
        auto bytes = xlsx(workbookSheets(docs, defs), &cut);
        if (cut > 0 && notes)
            notes->append(QStringLiteral("%1 cell(s) longer than %2 characters were cut to fit the workbook")
                              .arg(cut)
                              .arg(maxCellChars));
        return bytes;
    }
    }
    return QByteArray();
}

} // namespace Exporter
