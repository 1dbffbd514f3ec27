#include "Store.h"

#include "export/Csv.h"
#include "export/ExportFormat.h"
#include "export/ExportText.h"
#include "export/SaveFile.h"
#include "extract/CustomField.h"
#include "intake/SupportedFiles.h"
#include "model/CustomFieldCodec.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFutureWatcher>
#include <QStandardPaths>
#include <QtConcurrent/QtConcurrentRun>
#include <algorithm>
#include <tuple>

namespace {

const char *const jsonFilter = "JSON (*.json)";

} // namespace

Store::Store(QObject *parent) : Store(StoreOptions{}, parent) {}

Store::Store(StoreOptions options, QObject *parent)
    : QObject(parent), m_loader(std::move(options.loader)), m_ui(options.ui),
      m_customFields(options.dataFolder.isEmpty() ? CustomFieldCodec::defaultFolder() : options.dataFolder)
{
    if (!m_loader)
        m_loader = Processing::pipelineLoader();
    m_pool.setMaxThreadCount(1);
    m_pool.setExpiryTimeout(-1);
    m_syncPool.setMaxThreadCount(1);
}

Store::~Store()
{
    // The running document, if any, is finished before the pool goes; its result is dropped unseen.
    for (const QMetaObject::Connection &connection : std::as_const(m_subscriptions))
        disconnect(connection);
    m_pool.waitForDone();
    m_syncPool.waitForDone();
}

DocPtr Store::doc(const QUuid &id) const
{
    if (id.isNull())
        return nullptr;
    for (const DocPtr &d : m_docs) {
        if (d->id() == id)
            return d;
    }
    return nullptr;
}

// ---- The batch --------------------------------------------------------------------------------------

void Store::add(const QStringList &paths)
{
    QList<Pipeline::Found> found = Pipeline::expandReporting(paths);
    // The window reads what it can; a location that cannot be read is passed over.
    found.removeIf([](const Pipeline::Found &file) { return !file.error.isEmpty(); });
    if (found.isEmpty()) {
        setAlertText(Pipeline::noSupportedFilesMessage());
        return;
    }

    QSet<QString> known;
    for (const DocPtr &d : std::as_const(m_docs))
        known.insert(Pipeline::standardPath(d->path()));

    DocPtr firstNew;
    for (const Pipeline::Found &file : Pipeline::withoutRepeats(found, known)) {
        auto d = std::make_shared<DocItem>(QFileInfo(file.path).absoluteFilePath());
        DocItem *raw = d.get();
        m_subscriptions.insert(d->id(), connect(raw, &DocItem::changed, this, [this, raw] {
                                   emit docChanged(raw);
                                   emit changed();
                               }));
        m_docs.append(d);
        if (!firstNew)
            firstNew = d;
    }
    if (firstNew) {
        emit docsChanged();
        emit changed();
        if (m_selectedID.isNull())
            setSelectedID(firstNew->id());
    }
    if (!m_processing)
        startProcessing();
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
    if (!doc)
        return;
    doc->setApproved(false);
    doc->setStatus(DocStatus::Queued);
    doc->setProgress(0.0);
    if (!m_processing)
        startProcessing();
}

void Store::remove(const DocPtr &doc)
{
    const qsizetype i = m_docs.indexOf(doc);
    if (!doc || i < 0)
        return;
    if (m_selectedID == doc->id()) {
        if (i + 1 < m_docs.size())
            setSelectedID(m_docs[i + 1]->id());
        else if (i > 0)
            setSelectedID(m_docs[i - 1]->id());
        else
            setSelectedID(QUuid());
    }
    disconnect(m_subscriptions.take(doc->id()));
    m_docs.removeAt(i);
    emit docsChanged();
    emit changed();
}

void Store::clearAll()
{
    for (const QMetaObject::Connection &connection : std::as_const(m_subscriptions))
        disconnect(connection);
    m_subscriptions.clear();
    m_docs.clear();
    m_exported.clear();
    emit docsChanged();
    emit changed();
    setSelectedID(QUuid());
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
    return std::any_of(m_docs.cbegin(), m_docs.cend(),
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

QList<DocPtr> Store::unexportedApproved() const
{
    QList<DocPtr> docs;
    for (const DocPtr &d : approvedDocs()) {
        const auto exported = m_exported.constFind(d->id());
        if (exported == m_exported.cend() || exported->fields != d->fields() || exported->items != d->items())
            docs.append(d);
    }
    return docs;
}

bool Store::mayQuit()
{
    const qsizetype count = unexportedApproved().size();
    if (count == 0)
        return true;
    const QString detail = documents(count) +
                           (count == 1 ? QStringLiteral(" has") : QStringLiteral(" have")) +
                           QStringLiteral(" not been exported since the last change. Quitting loses them.");
    return m_ui && m_ui->confirm(QStringLiteral("Quit without exporting?"), detail, QStringLiteral("Quit"));
}

void Store::markExported()
{
    // The clipboard does not count: on X11 its contents leave with the program.
    for (const DocPtr &d : approvedDocs())
        m_exported.insert(d->id(), {d->fields(), d->items()});
}

void Store::startProcessing()
{
    m_processing = true;
    // The loop starts from the event loop, as a task of its own, not inside the caller.
    QMetaObject::invokeMethod(this, &Store::processNext, Qt::QueuedConnection);
}

void Store::processNext()
{
    // The list is read afresh for every document, so additions, removals and re-reads are picked up.
    for (const DocPtr &d : std::as_const(m_docs)) {
        if (d->status().kind() == DocStatus::Queued) {
            process(d);
            return;
        }
    }
    m_processing = false;
}

void Store::process(const DocPtr &doc)
{
    doc->setStatus(DocStatus::Reading);
    doc->setProgress(0.02);

    // Reports are posted to the main thread without waiting and hold the document weakly: the task
    // must never own (and so never destroy) a DocItem.
    std::weak_ptr<DocItem> weak = doc;
    Pipeline::Report report = [weak](DocStatus::Kind status, double progress) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [weak, status, progress] {
                const DocPtr d = weak.lock();
                // A report that arrives after the document left the in-progress statuses is stale.
                if (!d || !d->status().isInProgress())
                    return;
                d->setProgress(progress);
                d->setStatus(status);
            },
            Qt::QueuedConnection);
    };

    using Result = Expected<Processing::Loaded>;
    auto *watcher = new QFutureWatcher<Result>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, doc] {
        watcher->deleteLater();
        finish(doc, watcher->result());
    });
    watcher->setFuture(QtConcurrent::run(
        &m_pool, [path = doc->path(), snapshot = customFields(), report, loader = m_loader] {
            return Processing::run(path, snapshot, report, loader);
        }));
}

void Store::finish(const DocPtr &doc, Expected<Processing::Loaded> result)
{
    if (auto *loaded = std::get_if<Processing::Loaded>(&result)) {
        doc->pages = std::move(loaded->pages);
        doc->rows = std::move(loaded->extraction.rows);
        doc->setFields(loaded->extraction.fields);
        doc->setItems(loaded->extraction.items);
        doc->setProgress(1.0);
        doc->setStatus(DocStatus::Ready);
        noteSlowPatterns(loaded->extraction.slowPatterns);
    } else {
        doc->setProgress(1.0);
        doc->setStatus(DocStatus::failed(std::get<TabrixError>(result).message));
    }
    processNext();
}

// ---- Review -----------------------------------------------------------------------------------------

void Store::setSelectedID(const QUuid &id)
{
    assign(m_selectedID, id, &Store::selectionChanged);
}

qsizetype Store::currentIndex() const
{
    if (m_selectedID.isNull())
        return -1;
    for (qsizetype i = 0; i < m_docs.size(); ++i) {
        if (m_docs[i]->id() == m_selectedID)
            return i;
    }
    return -1;
}

DocPtr Store::selected() const
{
    const qsizetype i = currentIndex();
    return i < 0 ? nullptr : m_docs[i];
}

QList<DocPtr> Store::approvedDocs() const
{
    QList<DocPtr> approved;
    for (const DocPtr &d : m_docs) {
        if (d->approved())
            approved.append(d);
    }
    return approved;
}

bool Store::canGoPrevious() const
{
    return currentIndex() > 0;
}

bool Store::canGoNext() const
{
    const qsizetype i = currentIndex();
    return i >= 0 && i < m_docs.size() - 1;
}

QString Store::position() const
{
    const qsizetype i = currentIndex();
    if (i < 0)
        return QString();
    return QString::number(i + 1) + QStringLiteral(" of ") + QString::number(m_docs.size());
}

void Store::move(int delta)
{
    if (m_docs.isEmpty())
        return;
    const qsizetype target = std::clamp<qsizetype>(currentIndex() + delta, 0, m_docs.size() - 1);
    setSelectedID(m_docs[target]->id());
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
    for (const DocPtr &d : std::as_const(m_docs)) {
        if (d->status().kind() == DocStatus::Ready)
            d->setApproved(true);
    }
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

QList<DocRecord> Store::approvedRecords() const
{
    QList<DocRecord> records;
    for (const DocPtr &d : approvedDocs())
        records.append(d->record());
    return records;
}

bool Store::save(const QString &name, const QString &filter,
                 const std::function<std::optional<TabrixError>(const QString &path)> &write)
{
    if (!m_ui)
        return false;
    const QString path = m_ui->chooseFileToSave(name, filter);
    if (path.isEmpty())
        return false;
    if (const auto error = write(path)) {
        setAlertText(ExportText::exportFailed(error->message));
        return false;
    }
    return true;
}

void Store::exportAs(ExportFormat format, const QString &name, const QString &filter)
{
    // Taken before the dialog opens: the file holds the documents as they were when asked for.
    const QList<DocRecord> docs = approvedRecords();
    if (docs.isEmpty()) {
        setAlertText(ExportText::nothingApproved());
        return;
    }
    if (save(name, filter, [&](const QString &path) -> std::optional<TabrixError> {
            const Expected<QByteArray> bytes = Exporter::exportBytes(format, m_layout, docs, customFields());
            if (const auto *error = std::get_if<TabrixError>(&bytes))
                return *error;
            return Exporter::saveFile(path, std::get<QByteArray>(bytes));
        }))
        markExported();
}

void Store::exportCSV()
{
    exportAs(ExportFormat::csv, ExportText::csvFileName(m_layout), QStringLiteral("CSV (*.csv)"));
}

void Store::copyTSV()
{
    const QList<DocRecord> docs = approvedRecords();
    if (docs.isEmpty()) {
        setAlertText(ExportText::nothingApproved());
        return;
    }
    if (m_ui)
        m_ui->setClipboardText(Exporter::tsv(Exporter::table(m_layout, docs, customFields())));
    setAlertText(ExportText::copied(docs.size()));
}

void Store::exportJSON()
{
    exportAs(ExportFormat::json, ExportText::jsonFileName(), QString::fromLatin1(jsonFilter));
}

void Store::exportXLSX()
{
    exportAs(ExportFormat::xlsx, ExportText::xlsxFileName(), QStringLiteral("Excel workbook (*.xlsx)"));
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
    const int generation = ++m_syncGeneration;
    // Per document, the patterns to match afresh; their fields wait as placeholders without source.
    QList<std::tuple<std::weak_ptr<DocItem>, QList<Row>, QList<CustomFieldDef>>> work;
    for (const DocPtr &d : std::as_const(m_docs)) {
        if (d->status().kind() != DocStatus::Ready)
            continue;
        QList<Field> fields;
        for (const Field &f : d->fields()) {
            if (!f.isCustom)
                fields.append(f);
        }
        QList<CustomFieldDef> fresh;
        for (const CustomFieldDef &def : customFields()) {
            const QString key = uuidText(def.id);
            const QString label = def.name.isEmpty() ? QStringLiteral("Custom field") : def.name;
            const QString source = Extractor::customSource(def);
            const auto existing = std::find_if(d->fields().cbegin(), d->fields().cend(), [&](const Field &f) {
                return f.isCustom && f.key == key && f.source == source;
            });
            if (existing != d->fields().cend()) {
                // Same definition, maybe renamed: keep the value and any hand correction.
                Field kept = *existing;
                kept.label = label;
                fields.append(kept);
            } else if (!def.isRegex) {
                fields.append(Extractor::extractCustom(def, d->rows)); // a keyword search is linear
            } else {
                Field placeholder = emptyField(key, label);
                placeholder.isCustom = true;
                fields.append(placeholder);
                fresh.append(def);
            }
        }
        d->setFields(fields);
        if (!fresh.isEmpty())
            work.append({d, d->rows, fresh});
    }
    // A sync still running for earlier definitions is superseded: its result is dropped on arrival.
    m_syncing = !work.isEmpty();
    if (work.isEmpty())
        return;

    auto *watcher = new QFutureWatcher<std::pair<SyncResult, QList<QUuid>>>(this);
    connect(watcher, &QFutureWatcherBase::finished, this, [this, watcher, generation] {
        watcher->deleteLater();
        const auto [fields, slow] = watcher->result();
        if (generation != m_syncGeneration)
            return; // a later sync has replaced these definitions
        m_syncing = false;
        applySync(fields);
        noteSlowPatterns(slow);
    });
    watcher->setFuture(QtConcurrent::run(&m_syncPool, [work = std::move(work)] {
        std::pair<SyncResult, QList<QUuid>> result;
        for (const auto &[doc, rows, defs] : work) {
            QList<Field> fields;
            for (const CustomFieldDef &def : defs) {
                bool abandoned = false;
                fields.append(Extractor::extractCustom(def, rows, &abandoned));
                if (abandoned)
                    result.second.append(def.id);
            }
            result.first.append({doc, fields});
        }
        return result;
    }));
}

void Store::applySync(const SyncResult &results)
{
    for (const auto &[weak, extracted] : results) {
        const DocPtr d = weak.lock();
        // A document read again or removed meanwhile has its own fields now.
        if (!d || d->status().kind() != DocStatus::Ready)
            continue;
        QList<Field> fields = d->fields();
        bool replaced = false;
        for (Field &f : fields) {
            if (!f.isCustom || !f.source.isEmpty())
                continue;
            const auto found = std::find_if(extracted.cbegin(), extracted.cend(),
                                            [&](const Field &e) { return e.key == f.key; });
            if (found != extracted.cend()) {
                f = *found;
                replaced = true;
            }
        }
        if (replaced)
            d->setFields(fields);
    }
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
