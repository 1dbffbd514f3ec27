#include "StoreTestSupport.h"
#include "model/CustomFieldCodec.h"

namespace {

const CustomFieldDef po{QUuid::createUuid(), "PO", "PO[- ]?(\\d+)/x", true};
const CustomFieldDef ref{QUuid::createUuid(), "", "Reference", false};

using StoreCustomFields = StoreTest;

// Without a saved file the list is empty and no file appears until the first change; saved definitions
// are the codec's file form, which the next store loads back in order with their ids; a corrupt or
// wrongly shaped file is ignored silently and left on disk.
TEST_F(StoreCustomFields, SavedFileAndReload)
{
    const QString saved = data.filePath("custom-fields.json");
    EXPECT_TRUE(store->customFields().isEmpty());
    EXPECT_FALSE(QFile::exists(saved));
    store->setCustomFields({po, ref});
    EXPECT_EQ(readFile(saved), CustomFieldCodec::encode({po, ref}));
    EXPECT_EQ(makeStore()->customFields(), (QList<CustomFieldDef>{po, ref}));
    for (const QByteArray bad : {"[{\"id\": ", "{}"}) {
        writeFile(saved, bad);
        auto loaded = makeStore();
        EXPECT_TRUE(loaded->customFields().isEmpty()) << bad.constData();
        EXPECT_TRUE(loaded->alertText().isEmpty()) << bad.constData();
        EXPECT_EQ(readFile(saved), bad);
    }
    store->setCustomFields({});
    EXPECT_EQ(readFile(saved), "[]");
}

// An exported file imported again replaces the list with the same definitions and ids; a file that is
// missing, not a definitions list (here an object lacking "isRegex") or naming one id twice is refused
// with its own message and changes nothing.
TEST_F(StoreCustomFields, ExportAndImport)
{
    store->setCustomFields({po, ref});
    ui.saveAnswer = files.filePath("out.json");
    store->exportCustomFields();
    EXPECT_EQ(ui.proposedName, "tabrix-custom-fields.json");
    store->setCustomFields({ref});
    ui.openAnswer = ui.saveAnswer;
    store->importCustomFields();
    EXPECT_EQ(store->customFields(), (QList<CustomFieldDef>{po, ref}));
    EXPECT_TRUE(store->alertText().isEmpty());

    const QByteArray before = readFile(data.filePath("custom-fields.json"));
    writeFile(files.filePath("bad.json"),
              R"([{"id":"3F2504E0-4F89-11D3-9A0C-0305E82C3301","name":"PO","pattern":"x"}])");
    writeFile(files.filePath("twice.json"),
              CustomFieldCodec::encode({po, ref, CustomFieldDef{po.id, "Copy", "x"}}));
    const QString twice = "Two custom fields in that file have the same id " + uuidText(po.id) +
                          " (\"PO\" and \"Copy\"); each field needs its own id.";
    for (const auto &[name, message] :
         {std::pair{"bad.json", QString("That file isn't a Tabrix custom-fields JSON file.")},
          {"twice.json", twice},
          {"missing.json", files.filePath("missing.json") + ": No such file or directory"}}) {
        store->clearAlert();
        ui.openAnswer = files.filePath(name);
        store->importCustomFields();
        EXPECT_EQ(store->alertText(), message);
        EXPECT_EQ(store->customFields(), (QList<CustomFieldDef>{po, ref}));
        EXPECT_EQ(readFile(data.filePath("custom-fields.json")), before);
    }
}

// Syncing relabels renamed definitions keeping hand corrections, re-extracts changed ones, appends new
// ones, drops deleted ones, and leaves documents that are not ready alone.
TEST_F(StoreCustomFields, SyncUpdatesReadyDocuments)
{
    store->setCustomFields({po, ref});
    const QList<DocPtr> docs = readBatch(2);
    QList<Field> fields = docs[0]->fields();
    ASSERT_EQ(fields.size(), 10);
    for (qsizetype i : {8, 9}) {
        fields[i].value = "typed";
        fields[i].edited = true;
    }
    docs[0]->setFields(fields);
    docs[1]->setStatus(DocStatus::Queued);
    const QList<Field> queued = docs[1]->fields();

    CustomFieldDef renamed = po, changed = ref;
    renamed.name = "Purchase order";
    changed.isRegex = true;
    const CustomFieldDef added{QUuid::createUuid(), "Extra", "Extra", false};
    store->setCustomFields({changed, renamed, added});
    store->syncCustomFields();
    ASSERT_TRUE(waitUntil([&] { return !store->isSyncing(); }));

    const QList<Field> synced = docs[0]->fields();
    ASSERT_EQ(synced.size(), 11);
    EXPECT_EQ(synced.first(8), fields.first(8));
    EXPECT_EQ(synced[8].key, uuidText(ref.id));
    EXPECT_EQ(synced[8].label, "Custom field");
    EXPECT_EQ(synced[8].source, "re|Reference");
    EXPECT_FALSE(synced[8].edited);
    EXPECT_EQ(synced[9].label, "Purchase order");
    EXPECT_EQ(synced[9].value, "typed");
    EXPECT_TRUE(synced[9].edited);
    EXPECT_EQ(synced[10].key, uuidText(added.id));
    EXPECT_EQ(docs[1]->fields(), queued);

    store->setCustomFields({});
    store->syncCustomFields();
    EXPECT_EQ(docs[0]->fields(), fields.first(8));
}

// A pattern that backtracks without end is extracted off the calling thread: the call returns with the
// field pending and the pattern is marked as too slow. It spent the document's one matching budget, so
// the pattern after it stays empty, as when the document was read; the one before it is filled.
TEST_F(StoreCustomFields, SlowPatternSyncsInBackground)
{
    const QList<DocPtr> docs = readBatch(1);
    const CustomFieldDef quick{QUuid::createUuid(), "Quick", "a+", true};
    const CustomFieldDef slow{QUuid::createUuid(), "Slow", "(a+)+$", true};
    const CustomFieldDef after{QUuid::createUuid(), "After", "a+", true};
    docs[0]->rows = {Row(0, {TextLine{QString(40, u'a') + u'b', QRectF(0.1, 0.1, 0.5, 0.02), 0}})};
    store->setCustomFields({quick, slow, after});
    store->syncCustomFields();
    EXPECT_TRUE(store->isSyncing());
    ASSERT_TRUE(waitUntil([&] { return !store->isSyncing(); }, 60000));
    const QList<Field> fields = docs[0]->fields();
    ASSERT_EQ(fields.size(), 11);
    EXPECT_EQ(fields[8].value, QString(40, u'a'));
    EXPECT_EQ(fields[10].value, QString());
    EXPECT_EQ(store->slowPatterns(), QSet<QString>{"re|(a+)+$"});
}

} // namespace
