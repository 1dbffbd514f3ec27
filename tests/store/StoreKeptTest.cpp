#include "StoreTestSupport.h"

namespace {

class StoreKept : public StoreTest {
protected:
    QString kept = data.filePath("batch.tabrix");
    std::unique_ptr<Store> reopen()
    {
        store.reset(); // one writer at a time, as one window
        return std::make_unique<Store>(StoreOptions{data.path(), fake.loader(), &ui, kept});
    }
    void SetUp() override { store = reopen(); }
};

// Corrections, approvals, export marks and removals survive a restart; the start message counts what is
// there; Clear empties the kept batch too.
TEST_F(StoreKept, SurvivesRestart)
{
    const QList<DocPtr> docs = readBatch(3);
    docs[0]->editField("total", "12.50");
    docs[1]->setApproved(true);
    ui.saveAnswer = files.filePath("out.csv");
    store->exportCSV();
    store->remove(docs[2]);

    store = reopen();
    ASSERT_EQ(store->docs().size(), 2);
    EXPECT_EQ(store->docs()[0]->fields(), docs[0]->fields());
    EXPECT_EQ(store->docs()[0]->value("total"), "12.50");
    EXPECT_TRUE(store->docs()[1]->approved());
    EXPECT_EQ(store->docs()[1]->status().kind(), DocStatus::Ready);
    EXPECT_TRUE(store->unexportedApproved().isEmpty());
    EXPECT_EQ(store->alertText(), "2 documents, 1 approved, 0 to check");
    EXPECT_EQ(store->selectedID(), docs[0]->id());
    ASSERT_TRUE(waitUntil([&] { return !store->docs()[1]->pages.isEmpty(); }));
    EXPECT_EQ(store->docs()[0]->value("total"), "12.50") << "loading the pages keeps the corrections";

    store->clearAll();
    store = reopen();
    EXPECT_TRUE(store->docs().isEmpty());
}

// A file that changed or moved since it was read is noted and counted, never read again over the
// corrections; re-reading it clears the note.
TEST_F(StoreKept, ChangedFilesAreNoted)
{
    const QList<DocPtr> docs = readBatch(2);
    docs[0]->editField("total", "12.50");
    writeFile(docs[0]->path(), "changed\n");
    QFile::remove(docs[1]->path());

    store = reopen();
    EXPECT_EQ(store->alertText(), "2 documents, 0 approved, 2 to check");
    EXPECT_TRUE(store->fileNotice(store->docs()[0]).startsWith("The file has changed"));
    EXPECT_TRUE(store->fileNotice(store->docs()[1]).startsWith("The file is no longer"));
    EXPECT_EQ(store->docs()[0]->value("total"), "12.50");
    store->reprocess(store->docs()[0]);
    ASSERT_TRUE(idle());
    EXPECT_TRUE(store->fileNotice(store->docs()[0]).isEmpty());
}

// A reopened batch loads its documents' pages, the selected one first, taking nothing else from the
// file; a file changed or gone since is not loaded and the pane is told why.
TEST_F(StoreKept, PagesComeBackSelectedFirst)
{
    const QList<DocPtr> docs = readBatch(4);
    docs[0]->editField("total", "12.50");
    writeFile(docs[3]->path(), "changed\n");

    fake.hold();
    store = reopen();
    const QList<DocPtr> back = store->docs();
    store->setSelectedID(back[2]->id());
    fake.release();
    ASSERT_TRUE(waitUntil([&] { return !back[1]->pages.isEmpty(); }));
    EXPECT_EQ(fake.calls().mid(4), QStringList({"doc1.pdf", "doc3.pdf", "doc2.pdf"}));
    EXPECT_EQ(back[0]->value("total"), "12.50");
    EXPECT_EQ(back[0]->status().kind(), DocStatus::Ready);
    EXPECT_TRUE(back[3]->pages.isEmpty());
    EXPECT_EQ(store->pagesNotice(back[3]), store->fileNotice(back[3]));
    EXPECT_TRUE(store->pagesNotice(back[0]).isEmpty());
}

// A file changed or gone after the batch opened shows no page and says why; the kept values stay.
TEST_F(StoreKept, PagesOfAFileThatChangedSinceOpening)
{
    const QList<DocPtr> docs = readBatch(2);
    fake.hold();
    store = reopen();
    writeFile(docs[0]->path(), "changed\n");
    QFile::remove(docs[1]->path());
    fake.release();
    const QList<DocPtr> back = store->docs();
    ASSERT_TRUE(waitUntil([&] { return !store->pagesNotice(back[1]).isEmpty(); }));
    EXPECT_TRUE(back[0]->pages.isEmpty());
    EXPECT_TRUE(store->pagesNotice(back[0]).startsWith("The file has changed"));
    EXPECT_TRUE(store->fileNotice(back[1]).startsWith("The file is no longer"));
    EXPECT_EQ(back[0]->fields(), docs[0]->fields());
}

// "New batch…" starts an empty batch in its own file and "Open batch…" goes back to the first one;
// the last one opened is the one the next start opens.
TEST_F(StoreKept, SeveralBatches)
{
    readBatch(2);
    ui.saveAnswer = files.filePath("march.tabrix");
    store->newBatch();
    EXPECT_TRUE(store->docs().isEmpty());
    EXPECT_EQ(Store::keptBatchPath(data.path()), ui.saveAnswer);
    ui.openAnswer = kept;
    store->openBatch();
    EXPECT_EQ(store->docs().size(), 2);
    EXPECT_EQ(Store::keptBatchPath(data.path()), kept);
}

} // namespace
