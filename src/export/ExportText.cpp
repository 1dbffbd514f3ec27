#include "ExportText.h"

namespace ExportText {

QString nothingApproved()
{
    return QStringLiteral("Approve at least one document first. Only approved documents are exported.");
}

QString copied(qsizetype documents)
{
    return QStringLiteral("Copied %1 approved document%2 as tab-separated text. Paste it into a spreadsheet.")
        .arg(documents)
        .arg(documents == 1 ? QString() : QStringLiteral("s"));
}

QString exportFailed(const QString &description)
{
    return QStringLiteral("Export failed: ") + description;
}

QString csvFileName(RowLayout layout)
{
    return layout == RowLayout::perLineItem ? QStringLiteral("tabrix-line-items.csv")
                                            : QStringLiteral("tabrix-documents.csv");
}

QString jsonFileName()
{
    return QStringLiteral("tabrix-export.json");
}

QString xlsxFileName()
{
    return QStringLiteral("tabrix-export.xlsx");
}

} // namespace ExportText
