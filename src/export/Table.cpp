#include "Table.h"

#include "model/DocRecord.h"

QList<RowLayout> allRowLayouts()
{
    return {RowLayout::perDocument, RowLayout::perLineItem};
}

QString rowLayoutCaption(RowLayout layout)
{
    switch (layout) {
    case RowLayout::perDocument:
        return QStringLiteral("One row per document");
    case RowLayout::perLineItem:
        return QStringLiteral("One row per line item");
    }
    return {};
}

namespace Exporter {

Table documents(const QList<DocRecord> &docs, const QList<CustomFieldDef> &defs)
{
    Table table;
    table.headers = {QStringLiteral("File"),      QStringLiteral("Vendor"),   QStringLiteral("Number"),
                     QStringLiteral("Date"),      QStringLiteral("Due date"), QStringLiteral("Currency"),
                     QStringLiteral("Subtotal"),  QStringLiteral("Tax"),      QStringLiteral("Total"),
                     QStringLiteral("Line items")};
    QStringList customKeys;
    for (const CustomFieldDef &def : defs) {
        table.headers.append(def.name.isEmpty() ? QStringLiteral("Custom field") : def.name);
        customKeys.append(uuidText(def.id));
    }
    table.numeric = {6, 7, 8, 9};

    for (const DocRecord &doc : docs) {
        QStringList row{doc.fileName(),
                        doc.value(QStringLiteral("vendor")),
                        doc.value(QStringLiteral("number")),
                        doc.value(QStringLiteral("date")),
                        doc.value(QStringLiteral("dueDate")),
                        doc.value(QStringLiteral("currency")),
                        doc.value(QStringLiteral("subtotal")),
                        doc.value(QStringLiteral("tax")),
                        doc.value(QStringLiteral("total")),
                        QString::number(doc.items.size())};
        for (const QString &key : customKeys)
            row.append(doc.value(key));
        table.rows.append(row);
    }
    return table;
}

Table lineItems(const QList<DocRecord> &docs)
{
    Table table;
    table.headers = {
        QStringLiteral("File"),        QStringLiteral("Vendor"),        QStringLiteral("Number"),
        QStringLiteral("Date"),        QStringLiteral("Currency"),      QStringLiteral("Line"),
        QStringLiteral("Description"), QStringLiteral("Quantity"),      QStringLiteral("Unit price"),
        QStringLiteral("Amount"),      QStringLiteral("Document total")};
    table.numeric = {5, 7, 8, 9, 10};

    for (const DocRecord &doc : docs) {
        const QStringList prefix{doc.fileName(), doc.value(QStringLiteral("vendor")),
                                 doc.value(QStringLiteral("number")), doc.value(QStringLiteral("date")),
                                 doc.value(QStringLiteral("currency"))};
        const QString total = doc.value(QStringLiteral("total"));
        const QList<LineItem> &items = doc.items;
        if (items.isEmpty()) {
            table.rows.append(prefix +
                              QStringList{QString(), QString(), QString(), QString(), QString(), total});
            continue;
        }
        for (qsizetype i = 0; i < items.size(); ++i) {
            const LineItem &item = items.at(i);
            table.rows.append(prefix + QStringList{QString::number(i + 1), item.description, item.quantity,
                                                   item.unitPrice, item.amount, total});
        }
    }
    return table;
}

} // namespace Exporter
