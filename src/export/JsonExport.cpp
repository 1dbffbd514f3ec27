#include "JsonExport.h"

#include "model/DocRecord.h"
#include "model/JsonText.h"
#include "model/Money.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <cmath>

namespace Exporter {

namespace {

QJsonValue amount(const QString &text)
{
    const std::optional<double> x = Money::parse(text);
    return x ? QJsonValue(*x) : QJsonValue(QJsonValue::Null);
}

double roundedConfidence(const Field &field)
{
    if (field.edited)
        return 1.0;
    return std::round(field.confidence * 100.0) / 100.0;
}

} // namespace

QJsonObject jsonElement(const DocRecord &doc, const QList<CustomFieldDef> &defs)
{
    QJsonObject custom;
    for (const CustomFieldDef &def : defs) {
        const QString key = uuidText(def.id);
        custom.insert(def.name.isEmpty() ? key : def.name, doc.value(key));
    }

    QJsonArray items;
    for (const LineItem &item : doc.items) {
        items.append(QJsonObject{{QStringLiteral("description"), item.description},
                                 {QStringLiteral("quantity"), amount(item.quantity)},
                                 {QStringLiteral("unitPrice"), amount(item.unitPrice)},
                                 {QStringLiteral("amount"), amount(item.amount)}});
    }

    QJsonObject confidence;
    for (const Field &field : doc.fields)
        confidence.insert(field.label, roundedConfidence(field));

    return QJsonObject{
        {QStringLiteral("file"), doc.fileName()},
        {QStringLiteral("path"), QFileInfo(doc.path).absoluteFilePath()},
        {QStringLiteral("vendor"), doc.value(QStringLiteral("vendor"))},
        {QStringLiteral("number"), doc.value(QStringLiteral("number"))},
        {QStringLiteral("date"), doc.value(QStringLiteral("date"))},
        {QStringLiteral("dueDate"), doc.value(QStringLiteral("dueDate"))},
        {QStringLiteral("currency"), doc.value(QStringLiteral("currency"))},
        {QStringLiteral("subtotal"), amount(doc.value(QStringLiteral("subtotal")))},
        {QStringLiteral("tax"), amount(doc.value(QStringLiteral("tax")))},
        {QStringLiteral("total"), amount(doc.value(QStringLiteral("total")))},
        {QStringLiteral("customFields"), custom},
        {QStringLiteral("lineItems"), items},
        {QStringLiteral("confidence"), confidence},
    };
}

QByteArray json(const QList<DocRecord> &docs, const QList<CustomFieldDef> &defs)
{
    QJsonArray array;
    for (const DocRecord &doc : docs)
        array.append(jsonElement(doc, defs));
    return JsonText::write(array, JsonText::Slashes::Plain);
}

} // namespace Exporter
