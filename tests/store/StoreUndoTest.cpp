#include "StoreTestSupport.h"

namespace {

using StoreUndo = StoreTest;

// Every hand change undoes and redoes: a field typed key by key is one step, adding and editing a line
// item, "Approve all ready" as one step (leaving out likely duplicates, and saying so), a removal and
// Clear, each bringing the selection back to what returned; the program's own reading is no step.
TEST_F(StoreUndo, EveryActionUndoesAndRedoes)
{
    const QList<DocPtr> docs = readBatch(3);
    QUndoStack &undo = *store->undoStack();
    EXPECT_EQ(undo.count(), 0);

    const QList<Field> read = docs[0]->fields();
    docs[0]->editField("number", "4");
    docs[0]->editField("number", "47");
    EXPECT_EQ(undo.count(), 1);
    undo.undo();
    EXPECT_EQ(docs[0]->fields(), read);
    undo.redo();
    EXPECT_EQ(docs[0]->value("number"), "47");

    const QUuid item = docs[1]->addItem();
    docs[1]->editItem(item, LineItem::Amount, "5.00");
    undo.undo();
    EXPECT_TRUE(docs[1]->items()[0].amount.isEmpty());
    undo.undo();
    EXPECT_TRUE(docs[1]->items().isEmpty());
    undo.redo();
    undo.redo();
    EXPECT_EQ(docs[1]->items()[0].amount, "5.00");

    for (const DocPtr &copy : {docs[1], docs[2]}) {
        copy->editField("vendor", "Acme");
        copy->editField("number", "9");
        copy->editField("total", "5.00");
    }
    store->approveAllReady();
    EXPECT_TRUE(docs[0]->approved());
    EXPECT_FALSE(docs[1]->approved());
    EXPECT_EQ(store->alertText(), "Approved 1 document. Left out 2 that may be duplicates or are flagged for "
                                  "checking: approve those one by one.");
    undo.undo();
    EXPECT_FALSE(docs[0]->approved());
    undo.redo();
    EXPECT_TRUE(docs[0]->approved());

    store->setSelectedID(docs[1]->id());
    store->remove(docs[1]);
    EXPECT_EQ(store->selectedID(), docs[2]->id());
    undo.undo();
    EXPECT_EQ(store->docs(), docs);
    EXPECT_EQ(store->selectedID(), docs[1]->id());
    store->clearAll();
    undo.undo();
    EXPECT_EQ(store->docs(), docs);
    EXPECT_EQ(store->selectedID(), docs[0]->id());
    undo.redo();
    EXPECT_TRUE(store->docs().isEmpty());
}

} // namespace
