#include "export/JsonExport.h"
#include "ExportFixtures.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

Field field(const QString &key, const QString &label, const QString &value, double confidence,
            bool edited = false)
{
    return {key, label, value, confidence, edited, std::nullopt, false, QString()};
}

// One document written exactly: sorted keys, " : ", plain slashes, numbers or null for amounts, custom
// fields by name (by upper-case id when unnamed), confidences rounded or 1 when edited.
TEST(ExportJson, ExactText)
{
    const DocRecord doc{QStringLiteral("/data/in/inv 1.pdf"),
                        {field("vendor", "Vendor", "Café/Bar", 0.876),
                         field("number", "Number", "A-1", 0.125),
                         field("total", "Total", "1234.50", 0.42, true), field("tax", "Tax", "n/a", 0.3),
                         field(uuidText(poId), "PO", "00123", 0.9)},
                        {makeItem("Widget", "2", "1,000.00", "2000"), makeItem("Note", "", "", "")}};
    const QList<CustomFieldDef> defs{{poId, QStringLiteral("PO"), QStringLiteral("PO"), false},
                                     {refId, QString(), QStringLiteral("Ref"), false}};

    EXPECT_EQ(Exporter::json({doc}, defs), goldenFile("export.json"));
}

// No documents is an empty array; fields sharing a label and definitions sharing a name keep the later one.
TEST(ExportJson, EmptyAndCollisions)
{
    EXPECT_EQ(Exporter::json({}, {}), QByteArray("[]"));

    const DocRecord doc{QStringLiteral("/a.pdf"),
                        {field("total", "Same", "1", 0.5), field(uuidText(poId), "Same", "first", 0.25),
                         field(uuidText(refId), "X", "second", 0.0)},
                        {}};
    const QList<CustomFieldDef> defs{{poId, QStringLiteral("N"), QStringLiteral("p"), false},
                                     {refId, QStringLiteral("N"), QStringLiteral("r"), true}};
    const QJsonObject object = QJsonDocument::fromJson(Exporter::json({doc}, defs)).array().at(0).toObject();
    EXPECT_EQ(object.value("customFields").toObject(), QJsonObject({{"N", "second"}}));
    EXPECT_EQ(object.value("confidence").toObject(), QJsonObject({{"Same", 0.25}, {"X", 0}}));
    EXPECT_EQ(object.value("lineItems").toArray(), QJsonArray());
}

} // namespace
