#include "CliRunner.h"

#include <gtest/gtest.h>

namespace {

// The seam reads lines from standard input, as an object with custom field definitions or as a bare
// array, and prints fields (custom ones marked), items and rows with boxes.
TEST(LinesCli, ExtractsFromStandardInput)
{
    const QByteArray input = R"({"lines": [
        {"text": "Item", "rect": [0.1, 0.3, 0.2, 0.02]}, {"text": "Qty", "rect": [0.5, 0.3, 0.05, 0.02]},
        {"text": "Amount", "rect": [0.7, 0.3, 0.1, 0.02]},
        {"text": "Paper", "rect": [0.1, 0.33, 0.2, 0.02], "page": 0}, {"text": "3", "rect": [0.5, 0.33, 0.05, 0.02]},
        {"text": "12.00", "rect": [0.7, 0.33, 0.1, 0.02]},
        {"text": "Total", "rect": [0.5, 0.4, 0.1, 0.02]}, {"text": "12.00", "rect": [0.7, 0.4, 0.1, 0.02]}],
        "customFields": [{"id": "0F8D4E4A-3C1B-4F2A-9E57-1B2C3D4E5F60", "isRegex": false, "name": "PO",
                          "pattern": "Qty"}]})";
    const CliRun run = runLines(input);
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    const QJsonObject fields = fieldsByKey(run.out), total = fields["total"].toObject();
    EXPECT_EQ(total["value"].toString(), QStringLiteral("12.00"));
    EXPECT_EQ(total["box"]["page"].toInt(-1), 0);
    EXPECT_EQ(total["box"]["rect"].toArray().size(), 4);
    EXPECT_TRUE(fields["dueDate"]["box"].isNull());
    const QJsonObject custom = fields["0F8D4E4A-3C1B-4F2A-9E57-1B2C3D4E5F60"].toObject();
    EXPECT_TRUE(custom["isCustom"].toBool());
    EXPECT_EQ(custom["source"].toString(), QStringLiteral("kw|Qty"));

    const QJsonDocument result = QJsonDocument::fromJson(run.out);
    ASSERT_EQ(result["items"].toArray().size(), 1);
    EXPECT_EQ(result["items"][0]["quantity"].toString(), QStringLiteral("3"));
    EXPECT_EQ(result["items"][0]["unitPrice"].toString(), QStringLiteral("4.00"));
    ASSERT_EQ(result["rows"].toArray().size(), 3);
    EXPECT_EQ(result["rows"][0]["text"].toString(), QStringLiteral("Item  Qty  Amount"));
    EXPECT_EQ(result["rows"][0]["offsets"].toArray(), (QJsonArray{0, 6, 11}));

    const CliRun bare = runLines(R"([{"text": "PO Number: 4711-A", "rect": [0, 0, 1, 0.1]}])");
    ASSERT_EQ(bare.exitCode, 0);
    EXPECT_EQ(fieldsByKey(bare.out).size(), 8);
}

// The user's locale from the environment orders an ambiguous date: month first in C (taken as US English),
// day first for a British user.
TEST(LinesCli, LocaleOrdersAmbiguousDates)
{
    const QByteArray input = R"([{"text": "Invoice Date: 03/04/2024", "rect": [0.1, 0.1, 0.3, 0.02]}])";
    EXPECT_EQ(fieldsByKey(runLines(input).out).value("date")["value"].toString(),
              QStringLiteral("2024-03-04"));
    EXPECT_EQ(fieldsByKey(runLines(input, "en_GB.UTF-8").out).value("date")["value"].toString(),
              QStringLiteral("2024-04-03"));
}

// Invalid input is a one-line error with status 1, never a crash.
TEST(LinesCli, RejectsInvalidInput)
{
    // clang-format off
    const QList<QByteArray> inputs{
        "",
        "{",
        "42",
        R"({"lines": {}})",
        R"([{"rect": [0,0,1,1]}])",
        R"([{"text": "a"}])",
        R"([{"text": "a", "rect": [0,0,1]}])",
        R"([{"text": "a", "rect": [0,0,1,"x"]}])",
        R"([{"text": "a", "rect": [0,0,1,1], "page": 1.5}])",
        R"({"lines": [], "customFields": [{"id": "nope", "isRegex": false, "name": "", "pattern": ""}]})",
        R"({"lines": [], "customFields": [{"id": "0F8D4E4A-3C1B-4F2A-9E57-1B2C3D4E5F60", "name": "", "pattern": ""}]})"};
    // clang-format on
    for (const QByteArray &input : inputs) {
        const CliRun run = runLines(input);
        EXPECT_EQ(run.exitCode, 1) << input.toStdString();
        EXPECT_TRUE(run.out.isEmpty());
        EXPECT_EQ(run.err.count('\n'), 1) << run.err.toStdString();
    }
}

} // namespace
