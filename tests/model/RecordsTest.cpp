#include "model/DocItem.h"
#include "model/Graphemes.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

// Failed statuses compare by their message; only the reading steps count as in progress.
TEST(DocStatusTest, FailedComparesByMessageAndProgress)
{
    EXPECT_NE(DocStatus::failed(QStringLiteral("a")), DocStatus::failed(QStringLiteral("b")));
    EXPECT_TRUE(DocStatus(DocStatus::Recognizing).isInProgress());
    EXPECT_FALSE(DocStatus(DocStatus::Ready).isInProgress());
}

// Every published setter notifies observers.
TEST(DocItemTest, PublishedSettersSignal)
{
    DocItem doc(QStringLiteral("/tmp/a.pdf"));
    QSignalSpy spy(&doc, &DocItem::changed);
    doc.setStatus(DocStatus::Reading);
    doc.setProgress(0.5);
    doc.setApproved(true);
    doc.setFields({});
    doc.setItems({});
    EXPECT_EQ(spy.count(), 5);
}

// Rules that count characters count what a reader sees, not UTF-16 units.
TEST(GraphemesTest, CountsUserPerceivedCharacters)
{
    EXPECT_EQ(graphemeCount(QString()), 0);
    EXPECT_EQ(graphemeCount(QString::fromUtf16(u"Cafe\u0301")), 4);
    EXPECT_EQ(graphemeCount(QString::fromUtf16(u"\U0001F600 ok")), 4);
}

} // namespace
