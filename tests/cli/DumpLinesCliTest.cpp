#include "CliRunner.h"

#include <gtest/gtest.h>

// --dump-lines prints a digital invoice's lines in the --lines input form (normalised boxes, ligatures
// expanded), and feeding them back runs the extraction on the real file's text.
TEST(DumpLinesCli, RoundTripsIntoLines)
{
    const CliRun dump = runCli({"--dump-lines", sampleFile("northwind-invoice.pdf")});
    ASSERT_EQ(dump.exitCode, 0) << dump.err.constData();
    QJsonObject heading;
    for (const QJsonValue line : QJsonDocument::fromJson(dump.out)["lines"].toArray())
        if (line["text"] == QLatin1String("Northwind Office Supplies Ltd"))
            heading = line.toObject();
    ASSERT_FALSE(heading.isEmpty()) << dump.out.constData();
    EXPECT_EQ(heading["page"].toInt(-1), 0);
    const QJsonArray rect = heading["rect"].toArray();
    ASSERT_EQ(rect.size(), 4);
    EXPECT_GT(rect[0].toDouble(), 0.0);
    EXPECT_LT(rect[0].toDouble() + rect[2].toDouble(), 1.0);
    EXPECT_LT(rect[1].toDouble(), 0.2);

    const CliRun extracted = runLines(dump.out);
    ASSERT_EQ(extracted.exitCode, 0) << extracted.err.constData();
    EXPECT_EQ(fieldsByKey(extracted.out).value("total")["value"].toString(), QStringLiteral("286.92"));
}
