#include "model/DocItem.h"
#include "model/Graphemes.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace {

// Status labels are the texts users read; "failed" carries its message verbatim.
TEST(DocStatusTest, LabelsAndEquality)
{
    EXPECT_EQ(DocStatus(DocStatus::Queued).label(), QStringLiteral("Waiting"));
    EXPECT_EQ(DocStatus(DocStatus::Reading).label(), QStringLiteral("Reading file"));
    EXPECT_EQ(DocStatus(DocStatus::Recognizing).label(), QStringLiteral("Recognizing text"));
    EXPECT_EQ(DocStatus(DocStatus::Extracting).label(), QStringLiteral("Extracting fields"));
    EXPECT_EQ(DocStatus(DocStatus::Ready).label(), QStringLiteral("Ready for review"));
    EXPECT_EQ(DocStatus::failed(QString()).label(), QStringLiteral("Failed: "));
    EXPECT_EQ(DocStatus::failed(QStringLiteral("x")).label(), QStringLiteral("Failed: x"));
    EXPECT_EQ(DocStatus::failed(QStringLiteral("a")), DocStatus::failed(QStringLiteral("a")));
    EXPECT_NE(DocStatus::failed(QStringLiteral("a")), DocStatus::failed(QStringLiteral("b")));
    EXPECT_TRUE(DocStatus(DocStatus::Recognizing).isInProgress());
    EXPECT_FALSE(DocStatus(DocStatus::Queued).isInProgress());
    EXPECT_FALSE(DocStatus(DocStatus::Ready).isInProgress());
}

// A new document starts waiting and empty; value() takes the first exact key match.
TEST(DocItemTest, InitialStateAndValueLookup)
{
    DocItem doc(QStringLiteral("/tmp/a.pdf"));
    EXPECT_EQ(doc.status().label(), QStringLiteral("Waiting"));
    EXPECT_EQ(doc.progress(), 0.0);
    EXPECT_FALSE(doc.approved());
    EXPECT_TRUE(doc.fields().isEmpty() && doc.items().isEmpty() && doc.pages.isEmpty() && doc.rows.isEmpty());

    Field first = emptyField(QStringLiteral("total"), QStringLiteral("Total"));
    first.value = QStringLiteral("1.00");
    Field second = first;
    second.value = QStringLiteral("2.00");
    doc.setFields({first, second});
    EXPECT_EQ(doc.value(QStringLiteral("total")), QStringLiteral("1.00"));
    EXPECT_EQ(doc.value(QStringLiteral("Total")), QString());
    EXPECT_EQ(doc.value(QStringLiteral("missing")), QString());
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
    EXPECT_EQ(graphemeCount(QStringLiteral("Total")), 5);
    EXPECT_EQ(graphemeCount(QString::fromUtf16(u"Cafe\u0301")), 4);
    EXPECT_EQ(graphemeCount(QString::fromUtf16(u"\U0001F600 ok")), 4);
}

} // namespace
