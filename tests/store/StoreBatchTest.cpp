#include "StoreTestSupport.h"

namespace {

const QString noFiles = "No supported files found. Tabrix reads PDF, PNG, JPEG, HEIC and TIFF files.";

using StoreBatch = StoreTest;

// A file named twice (by a "." path or through its folder) joins once; nothing supported alerts; the
// first document added to an empty selection is selected and later additions keep the selection.
TEST_F(StoreBatch, AddExpandsDeduplicatesAndSelects)
{
    const QStringList paths = makeFiles({"in/b.pdf", "in/a.png", "in/notes.txt", "c.pdf"});
    for (const QStringList &nothing :
         {QStringList{paths[2]}, QStringList{files.filePath("x.pdf")}, QStringList{}}) {
        store->clearAlert();
        store->add(nothing);
        EXPECT_EQ(store->alertText(), noFiles);
    }
    store->clearAlert();
    store->add({paths[0], files.filePath("in/./b.pdf")});
    const QUuid first = store->docs()[0]->id();
    store->add({files.filePath("in"), paths[3]});
    EXPECT_EQ(store->docs().size(), 3);
    EXPECT_EQ(store->selectedID(), first);
    EXPECT_EQ(store->alertText(), QString());
    EXPECT_TRUE(idle());
    EXPECT_EQ(fake.calls(), (QStringList{"b.pdf", "a.png", "c.pdf"}));
}

// Files added while a document is read are read afterwards by the same loop, in list order; progress
// reports apply while in progress and are forwarded as store changes, but a late one is ignored.
TEST_F(StoreBatch, AdditionsAndProgressWhileProcessing)
{
    const QStringList paths = makeFiles({"a.pdf", "b.pdf", "c.pdf"});
    fake.hold();
    store->add({paths[0]});
    ASSERT_TRUE(waitUntil([&] { return fake.calls().size() == 1; }));
    const DocPtr a = store->docs()[0];
    EXPECT_EQ(a->status(), DocStatus(DocStatus::Reading));
    EXPECT_DOUBLE_EQ(a->progress(), 0.02);
    int changes = 0;
    QObject::connect(store.get(), &Store::changed, store.get(), [&] { ++changes; });
    fake.lastReport()(DocStatus::Recognizing, 0.5);
    ASSERT_TRUE(waitUntil([&] { return a->progress() == 0.5; }));
    EXPECT_EQ(a->status(), DocStatus(DocStatus::Recognizing));
    EXPECT_EQ(changes, 2);

    store->add({paths[2], paths[1]});
    EXPECT_EQ(store->docs()[1]->status(), DocStatus(DocStatus::Queued));
    fake.release();
    ASSERT_TRUE(idle());
    EXPECT_EQ(fake.calls(), (QStringList{"a.pdf", "c.pdf", "b.pdf"}));
    for (const DocPtr &d : store->docs()) {
        EXPECT_EQ(d->status(), DocStatus(DocStatus::Ready)) << d->fileName().toStdString();
        EXPECT_EQ(d->fields().size(), 8) << d->fileName().toStdString();
    }
    fake.lastReport()(DocStatus::Reading, 0.3);
    QCoreApplication::processEvents();
    EXPECT_EQ(store->docs()[2]->status(), DocStatus(DocStatus::Ready));
    EXPECT_EQ(store->docs()[2]->progress(), 1.0);
}

// A loader error becomes the failed status verbatim and keeps earlier fields; re-reading clears
// approval and shows "Waiting" until the loop takes the document again in its list position.
TEST_F(StoreBatch, FailureAndReprocess)
{
    const QStringList paths = makeFiles({"a.pdf", "b.pdf"}, "Total 10.00");
    store->add(paths);
    ASSERT_TRUE(idle());
    const DocPtr a = store->docs()[0];
    const QList<Field> before = a->fields();
    a->setApproved(true);
    writeFile(paths[0], "!PDF is password protected");
    fake.hold();
    store->reprocess(a);
    EXPECT_FALSE(a->approved());
    EXPECT_EQ(a->status().label(), "Waiting");
    EXPECT_EQ(a->progress(), 0.0);
    fake.release();
    ASSERT_TRUE(idle());
    EXPECT_EQ(fake.calls(), (QStringList{"a.pdf", "b.pdf", "a.pdf"}));
    EXPECT_EQ(a->status().label(), "Failed: PDF is password protected");
    EXPECT_EQ(a->progress(), 1.0);
    EXPECT_EQ(a->fields(), before);
}

// Removing the selected document selects the next one, else the previous one, else nothing.
TEST_F(StoreBatch, RemovingTheSelectedDocumentMovesTheSelection)
{
    store->add(makeFiles({"a.pdf", "b.pdf", "c.pdf"}));
    const QList<DocPtr> docs = store->docs();
    store->setSelectedID(docs[1]->id());
    store->remove(docs[1]);
    EXPECT_EQ(store->selectedID(), docs[2]->id());
    store->remove(docs[2]);
    EXPECT_EQ(store->selectedID(), docs[0]->id());
    store->remove(docs[2]); // no longer in the batch: nothing happens
    store->remove(docs[0]);
    EXPECT_TRUE(store->selectedID().isNull());
    EXPECT_TRUE(store->docs().isEmpty());
}

// A document removed while being read gets its result unseen and the loop goes on with the next one;
// after clearing mid-run the loop ends with the current document and a later add starts a new one.
TEST_F(StoreBatch, RemoveAndClearDuringProcessing)
{
    const QStringList paths = makeFiles({"a.pdf", "b.pdf", "c.pdf"});
    store->add(paths);
    fake.hold();
    ASSERT_TRUE(waitUntil([&] { return fake.calls().size() == 1; }));
    const DocPtr a = store->docs()[0];
    int forwarded = 0;
    QObject::connect(store.get(), &Store::docChanged, store.get(),
                     [&](DocItem *d) { forwarded += d == a.get(); });
    store->remove(a);
    fake.step();
    ASSERT_TRUE(waitUntil([&] { return fake.calls().size() == 2; }));
    EXPECT_EQ(a->status(), DocStatus(DocStatus::Ready));
    EXPECT_EQ(forwarded, 0);

    store->clearAll();
    EXPECT_TRUE(store->docs().isEmpty());
    EXPECT_TRUE(store->selectedID().isNull());
    EXPECT_TRUE(store->isProcessing());
    fake.release();
    ASSERT_TRUE(idle());
    EXPECT_EQ(fake.calls(), (QStringList{"a.pdf", "b.pdf"}));
    store->add({paths[2]});
    ASSERT_TRUE(store->isProcessing());
    ASSERT_TRUE(idle());
    EXPECT_EQ(store->docs()[0]->status(), DocStatus(DocStatus::Ready));
}

// Each dropped file URL is added by its own add, after the drop returns; other URLs are ignored. The
// open panel adds what was chosen, alerts when none of it is supported and does nothing on cancel.
TEST_F(StoreBatch, DropAndOpenPanel)
{
    const QStringList paths = makeFiles({"x.pdf", "dir/z.tiff", "empty/w.txt"});
    EXPECT_FALSE(store->handleDrop({}));
    EXPECT_FALSE(store->handleDrop({QUrl("https://example.com/a.pdf")}));
    int additions = 0;
    QObject::connect(store.get(), &Store::docsChanged, store.get(), [&] { ++additions; });
    EXPECT_TRUE(store->handleDrop({QUrl::fromLocalFile(paths[0]), QUrl("https://example.com/b.pdf"),
                                   QUrl::fromLocalFile(files.filePath("dir"))}));
    EXPECT_TRUE(store->docs().isEmpty());
    ASSERT_TRUE(waitUntil([&] { return store->docs().size() == 2; }));
    EXPECT_EQ(additions, 2);

    store->openPanel();
    EXPECT_TRUE(store->alertText().isEmpty());
    ui.chosen = {files.filePath("empty")};
    store->openPanel();
    EXPECT_EQ(store->alertText(), noFiles);
}

} // namespace

// The default loader is the intake pipeline: a digital PDF and a scanned image from the bundled samples
// are read on the store's worker thread, with page images for display and a total found.
TEST(StorePipeline, ReadsRealDocuments)
{
    QTemporaryDir data;
    Store store(StoreOptions{data.path(), {}, nullptr, {}});
    store.add({sampleFile("northwind-invoice.pdf"), sampleFile("atelier-invoice-scan.png")});
    ASSERT_EQ(store.docs().size(), 2);
    ASSERT_TRUE(waitUntil([&] { return !store.isProcessing(); }, 120000));
    for (const DocPtr &d : store.docs()) {
        EXPECT_EQ(d->status(), DocStatus(DocStatus::Ready)) << d->status().label().toStdString();
        ASSERT_FALSE(d->pages.isEmpty());
        EXPECT_FALSE(d->pages[0]->image.isNull());
        EXPECT_FALSE(d->value("total").isEmpty()) << d->fileName().toStdString();
    }
}
