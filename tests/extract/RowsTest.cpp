#include "extract/Rows.h"
#include "RowFixtures.h"

#include <gtest/gtest.h>

using RowFixtures::line;

namespace {

TextLine centred(const QString &text, double x, double midY, double h, int page = 0)
{
    return line(text, x, midY - h / 2, 0.1, h, page);
}

// Equal tops come out left to right; pages never share a row even at the same height.
TEST(BuildRows, OrdersByTopThenLeftAndSeparatesPages)
{
    const QList<Row> rows = Extractor::buildRows(
        {line("b", 0.5, 0.1), line("p1", 0.1, 0.1, 0.1, 0.02, 1), line("a", 0.1, 0.1), line("c", 0.1, 0.5)});
    QStringList texts;
    for (const Row &row : rows)
        texts << QString::number(row.page) + ": " + row.text;
    EXPECT_EQ(texts, (QStringList{"0: a  b", "0: c", "1: p1"}));
    EXPECT_TRUE(Extractor::buildRows({}).isEmpty());
}

// The tolerance uses the mean of the group and the smaller height; a third line joins via the mean.
TEST(BuildRows, GroupsByMeanCentreAndSmallerHeight)
{
    QList<Row> rows = Extractor::buildRows(
        {centred("x", 0.1, 0.100, 0.010), centred("y", 0.3, 0.104, 0.012), centred("z", 0.5, 0.106, 0.010)});
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0].lines.size(), 3);

    // 0.006 off with a small line of height 0.01: 0.006 ≥ 0.0055, so a new row.
    rows = Extractor::buildRows({centred("tall", 0.1, 0.100, 0.05), centred("small", 0.3, 0.106, 0.01)});
    EXPECT_EQ(rows.size(), 2);
}

// Joined text, UTF-16 offsets and the united rect follow the left-to-right order.
TEST(RowTest, JoinsWithTwoSpacesAndRecordsOffsets)
{
    const Row row(0, {line("Total", 0.6, 0.1), line("Qty", 0.1, 0.1), line("Price", 0.3, 0.12, 0.1, 0.03)});
    EXPECT_EQ(row.text, QStringLiteral("Qty  Price  Total"));
    EXPECT_EQ(row.offsets, (QList<qsizetype>{0, 5, 12}));
    EXPECT_DOUBLE_EQ(row.rect.left(), 0.1);
    EXPECT_DOUBLE_EQ(row.rect.right(), 0.7);
    EXPECT_DOUBLE_EQ(row.rect.bottom(), 0.15);

    const Row emoji(0, {line(QString::fromUtf16(u"\U0001F600"), 0.1, 0.1), line("x", 0.3, 0.1)});
    EXPECT_EQ(emoji.offsets, (QList<qsizetype>{0, 4}));
}

// Boxes are proportional within the line where the range starts, clipped and floored.
TEST(RowTest, BoxForRange)
{
    const Row row(0,
                  {line("Qty", 0.1, 0.1, 0.1), line("Price", 0.3, 0.1, 0.2), line("Total", 0.6, 0.1, 0.1)});
    EXPECT_EQ(row.box({5, 5}).rect, QRectF(0.3, 0.1, 0.2, 0.02));
    EXPECT_NEAR(row.box({5, 50}).rect.right(), 0.5, 1e-12); // runs past the line: clipped to it

    PageBox box = row.box({6, 0}); // empty range: one character wide
    EXPECT_NEAR(box.rect.left(), 0.34, 1e-12);
    EXPECT_NEAR(box.rect.width(), 0.04, 1e-12);

    box = row.box({3, 4}); // starts in the separator: pinned to the last character of "Qty"
    EXPECT_NEAR(box.rect.left(), 0.1 + 0.1 * 2 / 3, 1e-12);
    EXPECT_NEAR(box.rect.width(), 0.1 / 3, 1e-12);

    const Row empty(2, {line("", 0.2, 0.4, 0.001)});
    box = empty.box({0, 0});
    EXPECT_EQ(box.page, 2);
    EXPECT_DOUBLE_EQ(box.rect.left(), 0.2);
    EXPECT_DOUBLE_EQ(box.rect.width(), 0.004); // floor keeps tiny values visible
}

} // namespace
