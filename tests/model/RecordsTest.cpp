#include "model/DocStatus.h"
#include "model/Graphemes.h"

#include <gtest/gtest.h>

namespace {

// Failed statuses compare by their message; only the reading steps count as in progress.
TEST(DocStatusTest, FailedComparesByMessageAndProgress)
{
    EXPECT_NE(DocStatus::failed(QStringLiteral("a")), DocStatus::failed(QStringLiteral("b")));
    EXPECT_TRUE(DocStatus(DocStatus::Recognizing).isInProgress());
    EXPECT_FALSE(DocStatus(DocStatus::Ready).isInProgress());
}

// Rules that count characters count what a reader sees, not UTF-16 units.
TEST(GraphemesTest, CountsUserPerceivedCharacters)
{
    EXPECT_EQ(graphemeCount(QString()), 0);
    EXPECT_EQ(graphemeCount(QString::fromUtf16(u"Cafe\u0301")), 4);
    EXPECT_EQ(graphemeCount(QString::fromUtf16(u"\U0001F600 ok")), 4);
}

} // namespace
