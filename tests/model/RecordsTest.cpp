#include "model/Graphemes.h"

#include <gtest/gtest.h>

namespace {

// Rules that count characters count what a reader sees, not UTF-16 units.
TEST(GraphemesTest, CountsUserPerceivedCharacters)
{
    EXPECT_EQ(graphemeCount(QString()), 0);
    EXPECT_EQ(graphemeCount(QString::fromUtf16(u"Cafe\u0301")), 4);
    EXPECT_EQ(graphemeCount(QString::fromUtf16(u"\U0001F600 ok")), 4);
}

} // namespace
