#include "StoreTestSupport.h"
#include "store/Store.h"

#include <gtest/gtest.h>

namespace {

class StoreBatch : public ::testing::Test {
protected:
    QTemporaryDir data;
    QTemporaryDir files;
    FakeLoader fake;
    FakeUi ui;
    std::unique_ptr<Store> store;

    void SetUp() override { store = std::make_unique<Store>(StoreOptions{data.path(), fake.loader(), &ui}); }
    void TearDown() override
    {
        fake.release();
        waitUntil([&] { return !store->isProcessing(); });
    }

    QStringList names() const
    {
        QStringList out;
        for (const DocPtr &d : store->docs())
            out.append(d->fileName());
        return out;
    }
    bool idle()
    {
        return waitUntil([&] { return !store->isProcessing(); });
    }
};

// A file named twice, by a "." path or through its folder, joins the batch once; order follows expansion.
TEST_F(StoreBatch, AddSkipsFilesAlreadyInTheBatch)
{
    const QStringList paths = makeFiles(files, {"in/b.pdf", "in/a.png", "in/notes.txt"});
    store->add({paths[0], files.filePath("in/./b.pdf")});
    store->add({files.filePath("in")});
    EXPECT_EQ(names(), (QStringList{"b.pdf", "a.png"}));
    EXPECT_TRUE(store->alertText().isEmpty());
    EXPECT_TRUE(idle());
    EXPECT_EQ(fake.calls(), (QStringList{"b.pdf", "a.png"}));
}

// Nothing supported (unsupported files, missing paths, an empty list) is refused with the alert.
TEST_F(StoreBatch, AddWithNothingSupportedAlerts)
{
    const QStringList paths = makeFiles(files, {"notes.txt", "README"});
    for (const QStringList &given : {paths, QStringList{files.filePath("missing.pdf")}, QStringList{}}) {
        store->clearAlert();
        store->add(given);
        EXPECT_EQ(store->alertText(),
                  "No supported files found. Tabrix reads PDF, PNG, JPEG, HEIC and TIFF files.");
    }
    EXPECT_TRUE(store->docs().isEmpty());
    EXPECT_FALSE(store->isProcessing());
}

// The first document added to an empty selection is selected; later additions keep the selection.
TEST_F(StoreBatch, AddSelectsOnlyWhenNothingIsSelected)
{
    const QStringList paths = makeFiles(files, {"a.pdf", "b.pdf", "c.pdf"});
    store->add({paths[0], paths[1]});
    const QUuid first = store->docs()[0]->id();
    EXPECT_EQ(store->selectedID(), first);
    store->add({paths[2]});
    EXPECT_EQ(store->selectedID(), first);
}

// Files added while a document is read are appended and read afterwards by the same loop, in order.
TEST_F(StoreBatch, AdditionsWhileProcessingJoinTheRunningLoop)
{
    const QStringList paths = makeFiles(files, {"a.pdf", "b.pdf", "c.pdf"});
    fake.hold();
    store->add({paths[0]});
    ASSERT_TRUE(waitUntil([&] { return fake.waiting(); }));
    EXPECT_EQ(store->docs()[0]->status(), DocStatus(DocStatus::Reading));
    EXPECT_DOUBLE_EQ(store->docs()[0]->progress(), 0.02);

    store->add({paths[2], paths[1]});
    EXPECT_EQ(store->docs()[1]->status(), DocStatus(DocStatus::Queued));
    EXPECT_EQ(fake.calls(), QStringList{"a.pdf"});
    fake.release();
    ASSERT_TRUE(idle());
    EXPECT_EQ(fake.calls(), (QStringList{"a.pdf", "c.pdf", "b.pdf"}));
    for (const DocPtr &d : store->docs()) {
        EXPECT_EQ(d->status(), DocStatus(DocStatus::Ready));
        EXPECT_DOUBLE_EQ(d->progress(), 1.0);
        EXPECT_EQ(d->fields().size(), 8);
    }
}

// Progress applies while the document is in progress; a report arriving after it is ready is ignored.
TEST_F(StoreBatch, ProgressReportsApplyOnlyWhileInProgress)
{
    const QStringList paths = makeFiles(files, {"a.pdf"});
    fake.hold();
    store->add(paths);
    ASSERT_TRUE(waitUntil([&] { return fake.waiting(); }));
    const DocPtr doc = store->docs()[0];
    fake.lastReport()(DocStatus::Recognizing, 0.5);
    ASSERT_TRUE(waitUntil([&] { return doc->progress() == 0.5; }));
    EXPECT_EQ(doc->status(), DocStatus(DocStatus::Recognizing));

    fake.release();
    ASSERT_TRUE(idle());
    EXPECT_EQ(doc->status(), DocStatus(DocStatus::Ready));
    fake.lastReport()(DocStatus::Reading, 0.3);
    QCoreApplication::processEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(doc->status(), DocStatus(DocStatus::Ready));
    EXPECT_DOUBLE_EQ(doc->progress(), 1.0);
}

// A loader error becomes the failed status text verbatim, keeps earlier fields, and the batch goes on.
TEST_F(StoreBatch, FailureIsRecordedAndTheBatchContinues)
{
    const QStringList paths = makeFiles(files, {"bad.pdf", "good.pdf"});
    fake.setText("bad.pdf", {"Total 10.00"});
    store->add({paths[0]});
    ASSERT_TRUE(idle());
    const DocPtr bad = store->docs()[0];
    const QList<Field> before = bad->fields();
    ASSERT_FALSE(before.isEmpty());

    fake.setError("bad.pdf", "PDF is password protected");
    store->reprocess(bad);
    store->add({paths[1]});
    ASSERT_TRUE(idle());
    EXPECT_EQ(bad->status().label(), "Failed: PDF is password protected");
    EXPECT_DOUBLE_EQ(bad->progress(), 1.0);
    EXPECT_EQ(bad->fields(), before);
    EXPECT_EQ(store->docs()[1]->status(), DocStatus(DocStatus::Ready));
}

// Re-reading an approved document clears approval and shows "Waiting" until the loop takes it again.
TEST_F(StoreBatch, ReprocessClearsApprovalAndRequeues)
{
    const QStringList paths = makeFiles(files, {"a.pdf", "b.pdf"});
    store->add(paths);
    ASSERT_TRUE(idle());
    const DocPtr a = store->docs()[0];
    a->setApproved(true);
    fake.hold();
    store->reprocess(a);
    EXPECT_FALSE(a->approved());
    EXPECT_EQ(a->status().label(), "Waiting");
    EXPECT_DOUBLE_EQ(a->progress(), 0.0);
    EXPECT_TRUE(store->isProcessing());
    fake.release();
    ASSERT_TRUE(idle());
    EXPECT_EQ(fake.calls(), (QStringList{"a.pdf", "b.pdf", "a.pdf"}));
    EXPECT_EQ(a->status(), DocStatus(DocStatus::Ready));
}

// Removing the selected document selects the next one, else the previous one, else nothing.
TEST_F(StoreBatch, RemovingTheSelectedDocumentMovesTheSelection)
{
    store->add(makeFiles(files, {"a.pdf", "b.pdf", "c.pdf"}));
    const QList<DocPtr> docs = store->docs();
    store->setSelectedID(docs[1]->id());
    store->remove(docs[1]);
    EXPECT_EQ(store->selectedID(), docs[2]->id());
    store->remove(docs[2]);
    EXPECT_EQ(store->selectedID(), docs[0]->id());
    store->remove(docs[2]); // no longer in the batch: nothing happens
    EXPECT_EQ(store->docs().size(), 1);
    store->remove(docs[0]);
    EXPECT_TRUE(store->selectedID().isNull());
    EXPECT_TRUE(store->docs().isEmpty());
}

// A document removed while being read receives its result unseen; the loop moves on to the next one.
TEST_F(StoreBatch, RemovingTheRunningDocumentIsHarmless)
{
    store->add(makeFiles(files, {"a.pdf", "b.pdf"}));
    fake.hold();
    ASSERT_TRUE(waitUntil([&] { return fake.waiting(); }));
    const DocPtr running = store->docs()[0];
    int storeSignals = 0;
    QObject::connect(store.get(), &Store::docChanged, store.get(), [&](DocItem *d) {
        if (d == running.get())
            ++storeSignals;
    });
    store->remove(running);
    fake.release();
    ASSERT_TRUE(idle());
    EXPECT_EQ(running->status(), DocStatus(DocStatus::Ready));
    EXPECT_EQ(storeSignals, 0);
    EXPECT_EQ(names(), QStringList{"b.pdf"});
    EXPECT_EQ(store->docs()[0]->status(), DocStatus(DocStatus::Ready));
}

// Clearing during a run empties the batch; the loop stops after the current document and a later add
// starts a new one.
TEST_F(StoreBatch, ClearDuringProcessingThenAddAgain)
{
    const QStringList paths = makeFiles(files, {"a.pdf", "b.pdf"});
    store->add(paths);
    fake.hold();
    ASSERT_TRUE(waitUntil([&] { return fake.waiting(); }));
    store->clearAll();
    EXPECT_TRUE(store->docs().isEmpty());
    EXPECT_TRUE(store->selectedID().isNull());
    EXPECT_TRUE(store->isProcessing());
    fake.release();
    ASSERT_TRUE(idle());
    EXPECT_EQ(fake.calls(), QStringList{"a.pdf"});

    store->add({paths[1]});
    EXPECT_TRUE(store->isProcessing());
    ASSERT_TRUE(idle());
    EXPECT_EQ(store->docs()[0]->status(), DocStatus(DocStatus::Ready));
}

// Each dropped file URL is added by itself after the drop returns; other URLs are ignored.
TEST_F(StoreBatch, DropAddsEachFileUrlSeparately)
{
    const QStringList paths = makeFiles(files, {"x.pdf", "y.png", "dir/z.tiff", "dir/w.txt"});
    EXPECT_FALSE(store->handleDrop({}));
    EXPECT_FALSE(store->handleDrop({QUrl("https://example.com/a.pdf")}));
    int additions = 0;
    QObject::connect(store.get(), &Store::docsChanged, store.get(), [&] { ++additions; });
    EXPECT_TRUE(
        store->handleDrop({QUrl::fromLocalFile(paths[0]), QUrl("https://example.com/b.pdf"),
                           QUrl::fromLocalFile(paths[1]), QUrl::fromLocalFile(files.filePath("dir"))}));
    EXPECT_TRUE(store->docs().isEmpty());
    ASSERT_TRUE(waitUntil([&] { return store->docs().size() == 3; }));
    EXPECT_EQ(additions, 3);
    EXPECT_EQ(names(), (QStringList{"x.pdf", "y.png", "z.tiff"}));
}

// The open panel adds what was chosen; a choice with nothing supported alerts; cancelling does nothing.
TEST_F(StoreBatch, OpenPanelAddsTheChoice)
{
    makeFiles(files, {"empty/notes.txt", "full/a.pdf"});
    store->openPanel();
    EXPECT_TRUE(store->alertText().isEmpty());
    ui.filesAndFolders = {files.filePath("empty")};
    store->openPanel();
    EXPECT_EQ(store->alertText(),
              "No supported files found. Tabrix reads PDF, PNG, JPEG, HEIC and TIFF files.");
    ui.filesAndFolders = {files.filePath("full")};
    store->openPanel();
    EXPECT_EQ(names(), QStringList{"a.pdf"});
}

// Every change inside a document of the batch is forwarded as the store's own change.
TEST_F(StoreBatch, DocumentChangesAreForwarded)
{
    store->add(makeFiles(files, {"a.pdf"}));
    ASSERT_TRUE(idle());
    int changes = 0;
    QObject::connect(store.get(), &Store::changed, store.get(), [&] { ++changes; });
    store->docs()[0]->setApproved(true);
    EXPECT_EQ(changes, 1);
}

} // namespace
