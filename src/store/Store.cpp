#include "Store.h"

#include "export/ExportText.h"
#include "export/SaveFile.h"
#include "intake/SupportedFiles.h"
#include "model/CustomFieldCodec.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

namespace {

const char *const jsonFilter = "JSON (*.json)";

} // namespace

Store::Store(QObject *parent) : Store(StoreOptions{}, parent) {}

Store::Store(StoreOptions options, QObject *parent)
    : QObject(parent), m_ui(options.ui),
      m_dataFolder(options.dataFolder.isEmpty() ? CustomFieldCodec::defaultFolder() : options.dataFolder),
      m_customFields(m_dataFolder), m_batch(std::move(options.loader), [this] { return customFields(); }),
      m_exports(m_batch, m_customFields), m_history(m_batch)
{
    m_exports.setUi(m_ui);
    connect(&m_batch, &Batch::docsChanged, this, [this] {
        emit docsChanged();
        emit changed();
    });
    connect(&m_batch, &Batch::docChanged, this, [this](DocItem *doc) {
        emit docChanged(doc);
        emit changed();
    });
    connect(&m_batch, &Batch::slowPatterns, this, &Store::noteSlowPatterns);
    connect(&m_sync, &CustomFieldSync::finished, this, &Store::noteSlowPatterns);
    // A re-sync's matches are the program's, not the person's: not undone.
    connect(&m_sync, &CustomFieldSync::applying, &m_history, &History::beginQuiet);
    connect(&m_sync, &CustomFieldSync::finished, &m_history, &History::endQuiet);
    connect(&m_batch, &Batch::keepFailed, this, &Store::setAlertText);
    connect(&m_history, &History::restored, this, [this](const QList<DocPtr> &back) {
        if (!back.isEmpty())
            setSelectedID(back.first()->id());
    });
    if (!options.batchFile.isEmpty())
        openBatchFile(options.batchFile);
}

Store::~Store() = default;

void Store::setUi(StoreUi *ui)
{
    m_ui = ui;
    m_exports.setUi(ui);
}

void Store::tell(const QString &message)
{
    if (!message.isEmpty())
        setAlertText(message);
}

// ---- The batch --------------------------------------------------------------------------------------

void Store::add(const QStringList &paths)
{
    const Batch::Added added = m_batch.add(paths);
    if (!added.foundAny) {
        setAlertText(Pipeline::noSupportedFilesMessage());
        return;
    }
    if (added.firstNew && m_selectedID.isNull())
        setSelectedID(added.firstNew->id());
}

bool Store::handleDrop(const QList<QUrl> &urls)
{
    bool taken = false;
    for (const QUrl &url : urls) {
        if (!url.isLocalFile())
            continue;
        taken = true;
        // Each dropped item is added on its own, after the drop itself has returned.
        const QString path = url.toLocalFile();
        QMetaObject::invokeMethod(
            this, [this, path] { add({path}); }, Qt::QueuedConnection);
    }
    return taken;
}

void Store::openPanel()
{
    if (!m_ui)
        return;
    const QStringList paths =
        m_ui->chooseFilesAndFolders(QStringLiteral("Choose invoices, receipts, forms or folders of them"));
    if (!paths.isEmpty())
        add(paths);
}

void Store::reprocess(const DocPtr &doc)
{
    m_history.beginQuiet();
    m_batch.reprocess(doc);
    m_history.endQuiet();
}

void Store::remove(const DocPtr &doc)
{
    const qsizetype i = docs().indexOf(doc);
    if (!doc || i < 0)
        return;
    if (m_selectedID == doc->id()) {
        if (i + 1 < docs().size())
            setSelectedID(docs()[i + 1]->id());
        else if (i > 0)
            setSelectedID(docs()[i - 1]->id());
        else
            setSelectedID(QUuid());
    }
    m_history.remove(doc);
}

void Store::clearAll()
{
    m_history.clear();
    setSelectedID(QUuid());
}

// ---- Kept batches -----------------------------------------------------------------------------------

namespace {

const char *const batchFilter = "Tabrix batch (*.tabrix)";

/// Names the batch file last opened; kept beside the custom fields.
QString pointerFile(const QString &dataFolder)
{
    return dataFolder + QStringLiteral("/current-batch.txt");
}

QString count(qsizetype n, const char *one, const char *many)
{
    return QString::number(n) + u' ' + QLatin1String(n == 1 ? one : many);
}

} // namespace

QString Store::keptBatchPath(const QString &dataFolder)
{
    const QString folder = dataFolder.isEmpty() ? CustomFieldCodec::defaultFolder() : dataFolder;
    QFile pointer(pointerFile(folder));
    if (pointer.open(QIODevice::ReadOnly)) {
        QString path = QString::fromUtf8(pointer.readAll()).trimmed();
        if (!path.isEmpty())
            return path;
    }
    return folder + QStringLiteral("/batch.tabrix");
}

QString Store::summaryText() const
{
    const QList<DocPtr> &all = docs();
    if (all.isEmpty())
        return QString();
    QSet<QUuid> toCheck = flaggedIDs();
    for (const DocPtr &d : all) {
        if (!fileNotice(d).isEmpty())
            toCheck.insert(d->id());
    }
    return count(all.size(), "document", "documents") + QStringLiteral(", ") +
           QString::number(approvedDocs().size()) + QStringLiteral(" approved, ") +
           QString::number(toCheck.size()) + QStringLiteral(" to check");
}

void Store::openBatchFile(const QString &path)
{
    const Batch::Opened opened = m_batch.open(path);
    m_exports.restore(opened.exported);
    m_history.reset();
    setSelectedID(docs().isEmpty() ? QUuid() : docs().first()->id());
    setHighlightKey(QString());
    if (!m_batch.filePath().isEmpty())
        Exporter::saveFile(pointerFile(m_dataFolder), m_batch.filePath().toUtf8());
    setAlertText(opened.notice.isEmpty() ? summaryText() : opened.notice);
}

void Store::openBatch()
{
    if (!m_ui)
        return;
    if (batchFile().isEmpty() && hasWorkToLose() &&
        !m_ui->confirm(QStringLiteral("Open another batch?"),
                       QStringLiteral("This batch is not kept in a file: its approvals and corrections "
                                      "will be lost."),
                       QStringLiteral("Open")))
        return;
    const QString path = m_ui->chooseFileToOpen(QString::fromLatin1(batchFilter));
    if (!path.isEmpty())
        openBatchFile(path);
}

void Store::newBatch()
{
    if (!m_ui)
        return;
    const QString path =
        m_ui->chooseFileToSave(QStringLiteral("batch.tabrix"), QString::fromLatin1(batchFilter));
    if (path.isEmpty())
        return;
    if (QFileInfo(path).absoluteFilePath() == QFileInfo(batchFile()).absoluteFilePath()) {
        clearAllAsking();
        return;
    }
    // The save dialog has asked before replacing a file.
    for (const char *suffix : {"", "-wal", "-shm"})
        QFile::remove(path + QLatin1String(suffix));
    openBatchFile(path);
}

namespace {

bool hasHandEdits(const DocItem &doc)
{
    return std::any_of(doc.fields().cbegin(), doc.fields().cend(), [](const Field &f) { return f.edited; }) ||
           std::any_of(doc.items().cbegin(), doc.items().cend(), [](const LineItem &i) { return i.edited; });
}

QString documents(qsizetype count)
{
    return QString::number(count) +
           (count == 1 ? QStringLiteral(" approved document") : QStringLiteral(" approved documents"));
}

} // namespace

bool Store::hasWorkToLose() const
{
    return std::any_of(docs().cbegin(), docs().cend(),
                       [](const DocPtr &d) { return d->approved() || hasHandEdits(*d); });
}

void Store::clearAllAsking()
{
    if (hasWorkToLose()) {
        const qsizetype approved = approvedDocs().size();
        const QString detail =
            (approved > 0 ? documents(approved) + QStringLiteral(" and every correction")
                          : QStringLiteral("Every correction")) +
            QStringLiteral(" in this batch will be lost. The files themselves are not touched.");
        if (!m_ui || !m_ui->confirm(QStringLiteral("Clear the batch?"), detail, QStringLiteral("Clear")))
            return;
    }
    clearAll();
}

void Store::reprocessAsking(const DocPtr &doc)
{
    if (!doc)
        return;
    if (hasHandEdits(*doc) &&
        (!m_ui ||
         !m_ui->confirm(QStringLiteral("Re-read \u201C") + doc->fileName() + QStringLiteral("\u201D?"),
                        QStringLiteral("Your corrections to this document will be replaced by what "
                                       "is read from the file again."),
                        QStringLiteral("Re-read"))))
        return;
    reprocess(doc);
}

bool Store::mayQuit()
{
    // A kept batch loses nothing on quitting: it opens as it was next time.
    if (!batchFile().isEmpty())
        return true;
    const qsizetype count = unexportedApproved().size();
    if (count == 0)
        return true;
    const QString detail = documents(count) +
                           (count == 1 ? QStringLiteral(" has") : QStringLiteral(" have")) +
                           QStringLiteral(" not been exported since the last change. Quitting loses them.");
    return m_ui && m_ui->confirm(QStringLiteral("Quit without exporting?"), detail, QStringLiteral("Quit"));
}

// ---- Review -----------------------------------------------------------------------------------------

void Store::setSelectedID(const QUuid &id)
{
    // A restored document's page is what the person looks at next.
    m_batch.loadPages(id);
    assign(m_selectedID, id, &Store::selectionChanged);
}

qsizetype Store::currentIndex() const
{
    if (m_selectedID.isNull())
        return -1;
    for (qsizetype i = 0; i < docs().size(); ++i) {
        if (docs()[i]->id() == m_selectedID)
            return i;
    }
    return -1;
}

DocPtr Store::selected() const
{
    const qsizetype i = currentIndex();
    return i < 0 ? nullptr : docs()[i];
}

bool Store::canGoPrevious() const
{
    return currentIndex() > 0;
}

bool Store::canGoNext() const
{
    const qsizetype i = currentIndex();
    return i >= 0 && i < docs().size() - 1;
}

QString Store::position() const
{
    const qsizetype i = currentIndex();
    if (i < 0)
        return QString();
    return QString::number(i + 1) + QStringLiteral(" of ") + QString::number(docs().size());
}

void Store::move(int delta)
{
    if (docs().isEmpty())
        return;
    const qsizetype target = std::clamp<qsizetype>(currentIndex() + delta, 0, docs().size() - 1);
    setSelectedID(docs()[target]->id());
    setHighlightKey(QString());
}

void Store::approveAndNext()
{
    const DocPtr d = selected();
    if (!d || d->status().kind() != DocStatus::Ready || !d->approvalBlock().isEmpty())
        return;
    d->setApproved(true);
    move(+1);
}

void Store::approveAllReady()
{
    // Both copies of a duplicate, or a total in doubt, would be exported as they are: those wait for a look.
    const QSet<QUuid> duplicates = duplicateIDs();
    const QSet<QUuid> flagged = flaggedIDs();
    qsizetype approved = 0, leftOut = 0;
    undoStack()->beginMacro(QStringLiteral("Approve All Ready"));
    for (const DocPtr &d : docs()) {
        if (d->status().kind() != DocStatus::Ready || d->approved())
            continue;
        // A value typed in a form it cannot be exported in blocks approval too.
        if (duplicates.contains(d->id()) || flagged.contains(d->id()) || !d->approvalBlock().isEmpty()) {
            ++leftOut;
            continue;
        }
        d->setApproved(true);
        ++approved;
    }
    undoStack()->endMacro();
    if (leftOut > 0)
        setAlertText(
            QStringLiteral("Approved ") + count(approved, "document", "documents") +
            QStringLiteral(". Left out ") + QString::number(leftOut) +
            QStringLiteral(" that may be duplicates or are flagged for checking: approve those one by "
                           "one."));
}

void Store::setHighlightKey(const QString &key)
{
    assign(m_highlightKey, key, &Store::highlightKeyChanged);
}

void Store::setTargeted(bool targeted)
{
    assign(m_isTargeted, targeted, &Store::targetedChanged);
}

void Store::setAlertText(const QString &text)
{
    assign(m_alertText, text, &Store::alertTextChanged);
}

// ---- Exports ----------------------------------------------------------------------------------------

void Store::setLayout(RowLayout layout)
{
    assign(m_layout, layout, &Store::layoutChanged);
}

void Store::exportCSV()
{
    tell(m_exports.exportAs(ExportFormat::csv, m_layout));
}

void Store::copyTSV()
{
    tell(m_exports.copyTSV(m_layout));
}

void Store::exportJSON()
{
    tell(m_exports.exportAs(ExportFormat::json, m_layout));
}

void Store::exportXLSX()
{
    tell(m_exports.exportAs(ExportFormat::xlsx, m_layout));
}

// ---- Custom field definitions -----------------------------------------------------------------------

void Store::setCustomFields(const QList<CustomFieldDef> &defs)
{
    m_customFields.set(defs);
    emit customFieldsChanged();
    emit changed();
}

void Store::syncCustomFields()
{
    m_history.beginQuiet();
    m_sync.sync(docs(), customFields());
    m_history.endQuiet();
}

void Store::noteSlowPatterns(const QList<QUuid> &ids)
{
    if (m_customFields.noteSlow(ids)) {
        emit customFieldsChanged();
        emit changed();
    }
}

void Store::exportCustomFields()
{
    if (!m_ui)
        return;
    const QString path =
        m_ui->chooseFileToSave(QStringLiteral("tabrix-custom-fields.json"), QString::fromLatin1(jsonFilter));
    if (!path.isEmpty())
        Exporter::saveFile(path, CustomFieldCodec::encode(customFields()));
}

void Store::importCustomFields()
{
    if (!m_ui)
        return;
    const QString path = m_ui->chooseFileToOpen(QString::fromLatin1(jsonFilter));
    if (path.isEmpty())
        return;
    const auto defs = CustomFieldCodec::readFile(path);
    if (const auto *error = std::get_if<TabrixError>(&defs)) {
        setAlertText(error->message);
        return;
    }
    setCustomFields(std::get<QList<CustomFieldDef>>(defs));
    syncCustomFields();
}
