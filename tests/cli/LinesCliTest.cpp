#include "CliRunner.h"

#include <gtest/gtest.h>

namespace {

// The seam reads lines from standard input, as an object with custom field definitions or as a bare
// array, and prints fields (custom ones marked), items and rows with boxes, exactly as scripts read them.
TEST(LinesCli, ExtractsFromStandardInput)
{
    const CliRun run = runLines(goldenFile("lines/input.json"));
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(QJsonDocument::fromJson(run.out).toJson(), goldenFile("lines/output.json")); // indented to read
    const CliRun bare = runLines(R"([{"text": "PO Number: 4711-A", "rect": [0, 0, 1, 0.1]}])");
    ASSERT_EQ(bare.exitCode, 0);
    EXPECT_EQ(fieldsByKey(bare.out).size(), 8);
}

// The user's locale from the environment orders an ambiguous date: month first in C (taken as US English),
// day first for a British user.
TEST(LinesCli, LocaleOrdersAmbiguousDates)
{
    const QByteArray input = R"([{"text": "Invoice Date: 03/04/2024", "rect": [0.1, 0.1, 0.3, 0.02]}])";
    for (const auto &[locale, date] : {std::pair{"C", "2024-03-04"}, std::pair{"en_GB.UTF-8", "2024-04-03"}})
        EXPECT_EQ(fieldsByKey(runLines(input, locale).out).value("date")["value"].toString(), QString(date))
            << locale;
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
