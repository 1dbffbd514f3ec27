#include "StoreTestSupport.h"
#include "store/Store.h"

#include <gtest/gtest.h>

namespace {

const CustomFieldDef po{QUuid::fromString(QStringLiteral("3F2504E0-4F89-11D3-9A0C-0305E82C3301")), "PO",
                        "PO[- ]?(\\d+)/x", true};
const CustomFieldDef ref{QUuid::fromString(QStringLiteral("7C9E6679-7425-40DE-944B-E07FC1F90AE7")), "",
                         "Reference", false};

class StoreCustomFields : public ::testing::Test {
protected:
    QTemporaryDir data;
    QTemporaryDir files;
    FakeLoader fake;
    FakeUi ui;

    QString savedPath() const { return data.filePath("Tabrix/custom-fields.json"); }
    std::unique_ptr<Store> makeStore()
    {
        return std::make_unique<Store>(StoreOptions{data.filePath("Tabrix"), fake.loader(), &ui});
    }
};

// The saved file is a pretty-printed array with sorted keys, " : " separators and escaped slashes.
TEST_F(StoreCustomFields, SavedFileFormat)
{
    auto store = makeStore();
    store->setCustomFields({po, ref});
    EXPECT_EQ(readBytes(savedPath()), QByteArray("[\n"
                                                 "  {\n"
                                                 "    \"id\" : \"3F2504E0-4F89-11D3-9A0C-0305E82C3301\",\n"
                                                 "    \"isRegex\" : true,\n"
                                                 "    \"name\" : \"PO\",\n"
                                                 "    \"pattern\" : \"PO[- ]?(\\\\d+)\\/x\"\n"
                                                 "  },\n"
                                                 "  {\n"
                                                 "    \"id\" : \"7C9E6679-7425-40DE-944B-E07FC1F90AE7\",\n"
                                                 "    \"isRegex\" : false,\n"
                                                 "    \"name\" : \"\",\n"
                                                 "    \"pattern\" : \"Reference\"\n"
                                                 "  }\n"
                                                 "]"));
}

// Definitions saved by one store are loaded, in order and with their ids, by the next.
TEST_F(StoreCustomFields, RoundTripThroughTheSavedFile)
{
    makeStore()->setCustomFields({ref, po});
    EXPECT_EQ(makeStore()->customFields(), (QList<CustomFieldDef>{ref, po}));
}

// With no saved file the list starts empty and no file appears until the first change.
TEST_F(StoreCustomFields, MissingFileStartsEmpty)
{
    auto store = makeStore();
    EXPECT_TRUE(store->customFields().isEmpty());
    EXPECT_FALSE(QFile::exists(savedPath()));
    store->setCustomFields({});
    EXPECT_EQ(readBytes(savedPath()), QByteArray("[]"));
}

// A corrupt or wrongly shaped saved file is ignored silently and left on disk until the next change.
TEST_F(StoreCustomFields, CorruptFileIsIgnored)
{
    for (const QByteArray &bad :
         {QByteArray("[{\"id\": "), QByteArray("{}"),
          QByteArray("[{\"id\":\"nope\",\"isRegex\":true,\"name\":\"a\",\"pattern\":\"b\"}]")}) {
        QDir().mkpath(data.filePath("Tabrix"));
        writeBytes(savedPath(), bad);
        auto store = makeStore();
        EXPECT_TRUE(store->customFields().isEmpty()) << bad.constData();
        EXPECT_TRUE(store->alertText().isEmpty());
        EXPECT_EQ(readBytes(savedPath()), bad);
    }
}

// A file that is not a definitions list is refused with the message and changes nothing.
TEST_F(StoreCustomFields, ImportFailureKeepsTheList)
{
    auto store = makeStore();
    store->setCustomFields({po});
    const QByteArray saved = readBytes(savedPath());
    const QString bad = files.filePath("bad.json");
    writeBytes(bad, "[{\"id\":\"3F2504E0-4F89-11D3-9A0C-0305E82C3301\",\"name\":\"PO\",\"pattern\":\"x\"}]");
    for (const QString &path : {bad, files.filePath("missing.json")}) {
        store->clearAlert();
        ui.openAnswer = path;
        store->importCustomFields();
        EXPECT_EQ(store->alertText(), "That file isn't a Tabrix custom-fields JSON file.");
        EXPECT_EQ(store->customFields(), QList<CustomFieldDef>{po});
        EXPECT_EQ(readBytes(savedPath()), saved);
    }
}

// An exported file imported again reproduces the same definitions and ids, replacing the list.
TEST_F(StoreCustomFields, ExportThenImport)
{
    auto store = makeStore();
    store->setCustomFields({po, ref});
    ui.saveAnswer = files.filePath("out.json");
    store->exportCustomFields();
    EXPECT_EQ(ui.lastProposedName, "tabrix-custom-fields.json");
    EXPECT_EQ(readBytes(ui.saveAnswer), readBytes(savedPath()));

    store->setCustomFields({});
    ui.openAnswer = ui.saveAnswer;
    store->importCustomFields();
    EXPECT_EQ(store->customFields(), (QList<CustomFieldDef>{po, ref}));
    EXPECT_TRUE(store->alertText().isEmpty());
    EXPECT_EQ(makeStore()->customFields(), (QList<CustomFieldDef>{po, ref}));
}

// Syncing relabels renamed definitions keeping corrections, re-extracts changed ones, drops deleted
// ones, and leaves documents that are not ready alone.
TEST_F(StoreCustomFields, SyncUpdatesReadyDocuments)
{
    auto store = makeStore();
    store->setCustomFields({po, ref});
    store->add(makeFiles(files, {"a.pdf", "b.pdf"}));
    ASSERT_TRUE(waitUntil([&] { return !store->isProcessing(); }));
    const DocPtr a = store->docs()[0];
    const DocPtr queued = store->docs()[1];
    QList<Field> fields = a->fields();
    ASSERT_EQ(fields.size(), 10);
    fields[8].value = "PO-77";
    fields[8].edited = true;
    fields[9].value = "R-1";
    fields[9].edited = true;
    a->setFields(fields);
    queued->setStatus(DocStatus::Queued);
    const QList<Field> queuedBefore = queued->fields();

    CustomFieldDef renamed = po;
    renamed.name = "Purchase order";
    CustomFieldDef changed = ref;
    changed.isRegex = true;
    const CustomFieldDef added{QUuid::createUuid(), "Extra", "Extra", false};
    store->setCustomFields({changed, renamed, added});
    store->syncCustomFields();

    const QList<Field> synced = a->fields();
    ASSERT_EQ(synced.size(), 11);
    EXPECT_EQ(synced.mid(0, 8), fields.mid(0, 8));
    EXPECT_EQ(synced[8].key, uuidText(ref.id));
    EXPECT_EQ(synced[8].source, "re|Reference");
    EXPECT_FALSE(synced[8].edited);
    EXPECT_EQ(synced[8].label, "Custom field");
    EXPECT_EQ(synced[9].label, "Purchase order");
    EXPECT_EQ(synced[9].value, "PO-77");
    EXPECT_TRUE(synced[9].edited);
    EXPECT_EQ(synced[10].key, uuidText(added.id));
    EXPECT_EQ(queued->fields(), queuedBefore);

    store->setCustomFields({});
    store->syncCustomFields();
    EXPECT_EQ(a->fields(), fields.mid(0, 8));
}

} // namespace
