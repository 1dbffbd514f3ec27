#include "StoreTestSupport.h"

namespace {

using StoreReview = StoreTest;

// Position and the step conditions follow the selected index; an id naming no document counts as none.
TEST_F(StoreReview, PositionAndStepConditions)
{
    // clang-format off
    const struct { int count, selected; QString position; bool previous, next; } cases[] = { // selected -1: a stale id
        {10, 3, "4 of 10", true, true},
        {10, 0, "1 of 10", false, true},
        {10, 9, "10 of 10", true, false},
        {1, 0, "1 of 1", false, false},
        {3, -1, "", false, false},
    };
    // clang-format on
    for (const auto &c : cases) {
        store->clearAll();
        const QList<DocPtr> docs = readBatch(c.count);
        store->setSelectedID(c.selected < 0 ? QUuid::createUuid() : docs[c.selected]->id());
        SCOPED_TRACE(c.position.toStdString());
        EXPECT_EQ(store->position(), c.position);
        EXPECT_EQ(store->canGoPrevious(), c.previous);
        EXPECT_EQ(store->canGoNext(), c.next);
        EXPECT_EQ(store->selected(), c.selected < 0 ? nullptr : docs[c.selected]);
    }
}

// Moving clamps at both ends, starts from the first document without a selection, clears the
// highlight, and does nothing at all on an empty batch.
TEST_F(StoreReview, MoveClampsAndClearsHighlight)
{
    store->setHighlightKey("total");
    store->move(1);
    EXPECT_EQ(store->selected(), nullptr);
    EXPECT_EQ(store->highlightKey(), "total");

    const QList<DocPtr> docs = readBatch(10);
    // clang-format off
    const int cases[][3] = { // from (-1: no selection), delta, to
        {7, 5, 9},
        {0, -1, 0},
        {9, 1, 9},
        {4, -2, 2},
        {-1, 1, 0},
        {-1, -1, 0},
    };
    // clang-format on
    for (const auto &[from, delta, to] : cases) {
        store->setSelectedID(from < 0 ? QUuid() : docs[from]->id());
        store->setHighlightKey("total");
        store->move(delta);
        EXPECT_EQ(store->selectedID(), docs[to]->id()) << from << " " << delta;
        EXPECT_TRUE(store->highlightKey().isEmpty());
    }
}

// Approve-and-next approves a ready document and steps on (staying on the last); any other status
// blocks it entirely. Approve-all touches ready documents only; approved documents keep batch order.
TEST_F(StoreReview, Approval)
{
    const QList<DocPtr> docs = readBatch(4);
    store->setSelectedID(docs[2]->id());
    store->approveAndNext();
    store->approveAndNext();
    EXPECT_EQ(store->approvedDocs(), (QList<DocPtr>{docs[2], docs[3]}));
    EXPECT_EQ(store->selectedID(), docs[3]->id());

    docs[0]->setStatus(DocStatus::failed("unreadable"));
    docs[1]->setStatus(DocStatus::Queued);
    store->setSelectedID(docs[0]->id());
    store->setHighlightKey("vendor");
    store->approveAndNext();
    EXPECT_EQ(store->selected(), docs[0]);
    EXPECT_EQ(store->highlightKey(), "vendor");
    EXPECT_EQ(store->approvedDocs().size(), 2);

    docs[2]->setApproved(false);
    docs[1]->setStatus(DocStatus::Ready);
    store->approveAllReady();
    EXPECT_EQ(store->approvedDocs(), (QList<DocPtr>{docs[1], docs[2], docs[3]}));
    EXPECT_EQ(store->selectedID(), docs[0]->id());
}

// Re-reading, clearing and quitting ask only when work would be lost (a hand correction, an approval
// not exported as it is now), and a declined question changes nothing.
TEST_F(StoreReview, AskingGuardsWorkOnly)
{
    const QList<DocPtr> docs = readBatch(2);
    store->reprocessAsking(docs[0]);
    EXPECT_EQ(docs[0]->status(), DocStatus(DocStatus::Queued));
    ASSERT_TRUE(idle());
    EXPECT_TRUE(store->mayQuit());
    EXPECT_TRUE(ui.asked.isEmpty());

    docs[0]->editField(docs[0]->fields()[0].key, "Corrected");
    store->reprocessAsking(docs[0]);
    EXPECT_EQ(ui.asked, QStringList{"Re-read \u201Cdoc1.pdf\u201D?"});
    EXPECT_EQ(docs[0]->status(), DocStatus(DocStatus::Ready));

    docs[1]->setApproved(true);
    EXPECT_FALSE(store->mayQuit());
    ui.saveAnswer = files.filePath("out.json");
    store->exportJSON();
    EXPECT_TRUE(store->mayQuit());
    docs[1]->editField(docs[1]->fields()[0].key, "Later");
    EXPECT_EQ(store->unexportedApproved(), QList<DocPtr>{docs[1]});

    ui.asked.clear();
    store->clearAllAsking(); // declined: the batch stays
    EXPECT_EQ(ui.asked, QStringList{"Clear the batch?"});
    EXPECT_EQ(store->docs().size(), 2);
    ui.answer = true;
    store->clearAllAsking();
    EXPECT_TRUE(store->docs().isEmpty());
}

} // namespace
