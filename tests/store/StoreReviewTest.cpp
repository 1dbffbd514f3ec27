#include "StoreTestSupport.h"
#include "store/Store.h"

#include <gtest/gtest.h>

namespace {

class StoreReview : public ::testing::Test {
protected:
    QTemporaryDir data;
    QTemporaryDir files;
    FakeLoader fake;
    std::unique_ptr<Store> store;

    void SetUp() override
    {
        store = std::make_unique<Store>(StoreOptions{data.path(), fake.loader(), nullptr});
    }

    /// A batch of `n` documents, all read.
    QList<DocPtr> batch(int n)
    {
        QStringList rel;
        for (int i = 1; i <= n; ++i)
            rel.append(QStringLiteral("doc%1.pdf").arg(i));
        store->add(makeFiles(files, rel));
        EXPECT_TRUE(waitUntil([&] { return !store->isProcessing(); }));
        return store->docs();
    }
};

struct PositionCase {
    int count;
    int selected; ///< 0-based; -1 for an id naming no document
    const char *position;
    bool canGoPrevious;
    bool canGoNext;
};

// Position text and the two step conditions follow the selected index; a stale id counts as none.
TEST_F(StoreReview, PositionAndStepConditions)
{
    const PositionCase cases[] = {
        {10, 3, "4 of 10", true, true}, {10, 0, "1 of 10", false, true}, {10, 9, "10 of 10", true, false},
        {1, 0, "1 of 1", false, false}, {3, -1, "", false, false},
    };
    for (const PositionCase &c : cases) {
        store->clearAll();
        const QList<DocPtr> docs = batch(c.count);
        store->setSelectedID(c.selected < 0 ? QUuid::createUuid() : docs[c.selected]->id());
        EXPECT_EQ(store->position(), QString::fromLatin1(c.position)) << c.count << " " << c.selected;
        EXPECT_EQ(store->canGoPrevious(), c.canGoPrevious) << c.count << " " << c.selected;
        EXPECT_EQ(store->canGoNext(), c.canGoNext) << c.count << " " << c.selected;
        EXPECT_EQ(store->selected() != nullptr, c.selected >= 0);
    }
}

struct MoveCase {
    int selected; ///< -1: nothing selected
    int delta;
    int expected;
};

// Moving clamps at both ends, starts from the first document without a selection, and clears the highlight.
TEST_F(StoreReview, MoveClampsAndClearsHighlight)
{
    const QList<DocPtr> docs = batch(10);
    const MoveCase cases[] = {{7, 5, 9}, {0, -1, 0}, {9, 1, 9}, {4, -2, 2}, {-1, 1, 0}, {-1, -1, 0}};
    for (const MoveCase &c : cases) {
        store->setSelectedID(c.selected < 0 ? QUuid() : docs[c.selected]->id());
        store->setHighlightKey("total");
        store->move(c.delta);
        EXPECT_EQ(store->selectedID(), docs[c.expected]->id()) << c.selected << " " << c.delta;
        EXPECT_TRUE(store->highlightKey().isEmpty());
    }
}

// On an empty batch moving does nothing and leaves the highlight alone.
TEST_F(StoreReview, MoveOnEmptyBatchDoesNothing)
{
    store->setHighlightKey("total");
    store->move(1);
    EXPECT_TRUE(store->selectedID().isNull());
    EXPECT_EQ(store->highlightKey(), "total");
}

// Approve-and-next approves a ready document and steps on (staying on the last); anything else blocks it.
TEST_F(StoreReview, ApproveAndNext)
{
    const QList<DocPtr> docs = batch(3);
    store->setSelectedID(docs[1]->id());
    store->approveAndNext();
    EXPECT_TRUE(docs[1]->approved());
    EXPECT_EQ(store->selectedID(), docs[2]->id());
    store->approveAndNext();
    EXPECT_TRUE(docs[2]->approved());
    EXPECT_EQ(store->selectedID(), docs[2]->id());

    docs[0]->setStatus(DocStatus::failed("unreadable"));
    store->setSelectedID(docs[0]->id());
    store->setHighlightKey("vendor");
    store->approveAndNext();
    EXPECT_FALSE(docs[0]->approved());
    EXPECT_EQ(store->selectedID(), docs[0]->id());
    EXPECT_EQ(store->highlightKey(), "vendor");
}

// Approving all ready documents touches exactly those; approved documents come out in batch order.
TEST_F(StoreReview, ApproveAllReadyAndApprovedOrder)
{
    const QList<DocPtr> docs = batch(4);
    docs[1]->setStatus(DocStatus::failed("x"));
    docs[2]->setStatus(DocStatus::Queued);
    store->setSelectedID(docs[2]->id());
    store->approveAllReady();
    EXPECT_EQ(store->approvedDocs(), (QList<DocPtr>{docs[0], docs[3]}));
    EXPECT_EQ(store->selectedID(), docs[2]->id());

    docs[3]->setApproved(false);
    docs[1]->setApproved(true);
    docs[3]->setApproved(true);
    EXPECT_EQ(store->approvedDocs(), (QList<DocPtr>{docs[0], docs[1], docs[3]}));
}

} // namespace
