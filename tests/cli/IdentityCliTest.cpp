#include "CliRunner.h"

#include <QUuid>
#include <gtest/gtest.h>

namespace {

const QString poId = QStringLiteral("11111111-2222-3333-4444-555555555555");
const QString groupId = QStringLiteral("11111111-2222-3333-4444-555555555556");
const QString wholeId = QStringLiteral("11111111-2222-3333-4444-555555555557");
const QString spanId = QStringLiteral("11111111-2222-3333-4444-555555555558");
const QString invalidId = QStringLiteral("11111111-2222-3333-4444-555555555559");
const QString belowId = QStringLiteral("11111111-2222-3333-4444-55555555555A");

QJsonObject definition(const QString &id, const QString &name, const QString &pattern, bool isRegex)
{
    return QJsonObject{{QStringLiteral("id"), id},
                       {QStringLiteral("name"), name},
                       {QStringLiteral("pattern"), pattern},
                       {QStringLiteral("isRegex"), isRegex}};
}

QByteArray invoice(const QJsonArray &customFields = {})
{
    const QJsonArray lines{
        line(QStringLiteral("John Smith"), 0.1, 0.02),
        line(QStringLiteral("Golden Bakery"), 0.1, 0.05),
        line(QStringLiteral("Invoice No: INV-2024-001"), 0.1, 0.10),
        line(QStringLiteral("Invoice Date: 03/04/2024"), 0.1, 0.13),
        line(QStringLiteral("Terms: Net 30"), 0.1, 0.16),
        line(QStringLiteral("PO Number: 4711-A"), 0.1, 0.19),
        line(QStringLiteral("Ref PO-1234"), 0.1, 0.22),
        line(QStringLiteral("Project:"), 0.1, 0.25),
        line(QStringLiteral("Apollo rollout"), 0.1, 0.28),
        line(QStringLiteral("Total EUR 10.80"), 0.1, 0.40),
    };
    return QJsonDocument(
               QJsonObject{{QStringLiteral("lines"), lines}, {QStringLiteral("customFields"), customFields}})
        .toJson();
}

void expectField(const QJsonObject &fields, const QString &key, const QString &value, double confidence,
                 bool boxed)
{
    const QJsonObject f = fields.value(key).toObject();
    ASSERT_FALSE(f.isEmpty()) << qPrintable(key);
    EXPECT_EQ(f[QStringLiteral("value")].toString(), value) << qPrintable(key);
    EXPECT_NEAR(f[QStringLiteral("confidence")].toDouble(), confidence, 1e-9) << qPrintable(key);
    EXPECT_EQ(!f[QStringLiteral("box")].isNull(), boxed) << qPrintable(key);
}

// The identity fields come back through the CLI with their values, confidences and boxes; the
// ambiguous date reads month first for a C locale (taken as US English).
TEST(IdentityCli, StandardFields)
{
    const CliRun run = runLines(invoice());
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    const QJsonObject fields = fieldsByKey(run.out);
    EXPECT_EQ(fields.size(), 8);
    expectField(fields, QStringLiteral("vendor"), QStringLiteral("Golden Bakery"), 0.75, true);
    expectField(fields, QStringLiteral("number"), QStringLiteral("INV-2024-001"), 0.92, true);
    expectField(fields, QStringLiteral("date"), QStringLiteral("2024-03-04"), 0.9, true);
    expectField(fields, QStringLiteral("dueDate"), QStringLiteral("2024-04-03"), 0.45, false);
    expectField(fields, QStringLiteral("currency"), QStringLiteral("EUR"), 0.9, true);
}

// A British user reads the same ambiguous date day first.
TEST(IdentityCli, LocaleOrdersAmbiguousDates)
{
    const CliRun run = runLines(invoice(), QStringLiteral("en_GB.UTF-8"));
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    expectField(fieldsByKey(run.out), QStringLiteral("date"), QStringLiteral("2024-04-03"), 0.9, true);
}

// A note that payment is due on receipt makes the issue date the due date.
TEST(IdentityCli, DueOnReceipt)
{
    const QJsonArray lines{line(QStringLiteral("Date: 15 Jan 2024"), 0.1, 0.1),
                           line(QStringLiteral("Payment due on receipt"), 0.1, 0.2)};
    const CliRun run = runLines(QJsonDocument(QJsonObject{{QStringLiteral("lines"), lines}}).toJson());
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    const QJsonObject fields = fieldsByKey(run.out);
    expectField(fields, QStringLiteral("date"), QStringLiteral("2024-01-15"), 0.9, true);
    expectField(fields, QStringLiteral("dueDate"), QStringLiteral("2024-01-15"), 0.5, false);
}

// Every kind of custom definition works end to end and comes back after the standard fields, in order.
TEST(IdentityCli, CustomFields)
{
    const QJsonArray defs{
        definition(poId, QStringLiteral("PO"), QStringLiteral("PO Number"), false),
        definition(groupId, QStringLiteral("PO digits"), QStringLiteral(R"(PO[- ]?(\d+))"), true),
        definition(wholeId, QStringLiteral("Invoice ref"), QStringLiteral(R"(INV-\d+)"), true),
        definition(spanId, QStringLiteral("Project span"), QStringLiteral(R"(Project:\s+(\w+ \w+))"), true),
        definition(invalidId, QStringLiteral("Broken"), QStringLiteral("("), true),
        definition(belowId, QString(), QStringLiteral("Project"), false),
    };
    const CliRun run = runLines(invoice(defs));
    ASSERT_EQ(run.exitCode, 0) << run.err.constData();
    const QJsonArray list =
        QJsonDocument::fromJson(run.out).object().value(QStringLiteral("fields")).toArray();
    ASSERT_EQ(list.size(), 14);
    EXPECT_EQ(list[8][QStringLiteral("key")].toString(), poId);
    EXPECT_EQ(list[13][QStringLiteral("key")].toString(), belowId);
    EXPECT_EQ(list[13][QStringLiteral("label")].toString(), QStringLiteral("Custom field"));
    EXPECT_EQ(list[9][QStringLiteral("source")].toString(), QStringLiteral(R"(re|PO[- ]?(\d+))"));
    EXPECT_TRUE(list[9][QStringLiteral("isCustom")].toBool());

    const QJsonObject fields = fieldsByKey(run.out);
    expectField(fields, poId, QStringLiteral("4711-A"), 0.75, true);
    expectField(fields, groupId, QStringLiteral("1234"), 0.85, true);
    expectField(fields, wholeId, QStringLiteral("INV-2024"), 0.85, true);
    expectField(fields, spanId, QStringLiteral("Apollo rollout"), 0.7, false);
    expectField(fields, invalidId, QString(), 0, false);
    expectField(fields, belowId, QStringLiteral("Apollo rollout"), 0.55, true);
}

// A definition the custom-fields decoder rejects is an input error, not a crash.
TEST(IdentityCli, RejectsMalformedDefinition)
{
    const QJsonArray defs{QJsonObject{{QStringLiteral("id"), QStringLiteral("not-a-uuid")},
                                      {QStringLiteral("name"), QStringLiteral("X")},
                                      {QStringLiteral("pattern"), QStringLiteral("X")},
                                      {QStringLiteral("isRegex"), false}}};
    const CliRun run = runLines(invoice(defs));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.out.isEmpty());
    EXPECT_TRUE(run.err.contains("customFields")) << run.err.constData();
}

} // namespace
