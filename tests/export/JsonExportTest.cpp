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

// No documents is an empty array. (Names that would share a key are refused with the definitions.)
TEST(ExportJson, Empty)
{
    EXPECT_EQ(Exporter::json({}, {}), QByteArray("[]"));
}

} // namespace
