#include "export/JsonExport.h"
#include "ExportFixtures.h"
#include "support/TestSupport.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

const QUuid poId("{11111111-2222-4333-8444-555555555555}");
const QUuid refId("{aaaaaaaa-bbbb-4ccc-8ddd-eeeeeeeeeeee}");

Field field(const QString &key, const QString &label, const QString &value, double confidence,
            bool edited = false)
{
    Field f;
    f.key = key;
    f.label = label;
    f.value = value;
    f.confidence = confidence;
    f.edited = edited;
    return f;
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
    EXPECT_EQ(object.value("total").toDouble(), 1.0);
}

// Python's json module reads the export as the same structure, in queue order.
TEST(ExportJson, PythonReadsItBack)
{
    const auto first = makeDoc(QStringLiteral("/q/1.pdf"), {{"total", "0.88"}, {"vendor", "\"Q\" & \\ / ü"}});
    const auto second =
        makeDoc(QStringLiteral("/q/2.pdf"), {{"subtotal", "100.00"}}, {makeItem("d", "0.5", "", "")});
    QString error;
    const QByteArray out =
        runPython(QStringLiteral("import json, sys\n"
                                 "docs = json.loads(sys.stdin.buffer.read().decode('utf-8'))\n"
                                 "print(json.dumps([[d['file'], d['vendor'], d['total'], "
                                 "d['subtotal'], d['lineItems']] for d in docs], "
                                 "ensure_ascii=False))"),
                  Exporter::json({first, second}, {}), &error);
    if (out.isNull())
        GTEST_SKIP() << error.toStdString();
    EXPECT_EQ(
        QString::fromUtf8(out.trimmed()),
        QStringLiteral(R"([["1.pdf", "\"Q\" & \\ / ü", 0.88, null, []], ["2.pdf", "", null, 100, )"
                       R"([{"amount": null, "description": "d", "quantity": 0.5, "unitPrice": null}]]])"));
}

} // namespace
