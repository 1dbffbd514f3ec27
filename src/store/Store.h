#pragma once

#include "Batch.h"
#include "BatchSummary.h"
#include "CustomFieldSettings.h"
#include "CustomFieldSync.h"
#include "DocPtr.h"
#include "Exports.h"
#include "History.h"
#include "StoreUi.h"
#include "intake/Processing.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <QUuid>

/// How a Store is wired to the world. The defaults are the desktop application's.
struct StoreOptions {
    /// Folder holding "custom-fields.json". Empty: the user's data folder
    /// (QStandardPaths::GenericDataLocation) + "/Tabrix".
    QString dataFolder;
    /// Reads one document's pages. Empty: the intake pipeline, rendering page images for display.
    Processing::Loader loader;
    /// Dialogs and clipboard; not owned, must outlive the store or be replaced with setUi(nullptr).
    /// Null: every dialog counts as cancelled and the clipboard is left alone.
    StoreUi *ui = nullptr;
    /// The SQLite file the batch is kept in as it changes (see Batch::open). Empty: the batch lives in
    /// memory only. The application passes keptBatchPath(), where the last batch used was.
    QString batchFile;
};

/// The application's state as the window sees it: a thin front over the batch and its processing loop
/// (Batch), the exports (Exports) and the custom-field re-sync (CustomFieldSync), holding what only the
/// window needs (selection, highlight, drag state, the alert) and asking before work could be lost.
///
/// Lives on the main thread and is used from there only. Messages for the user (refused drops, import
/// errors, export results) are set as alertText, which the window shows and clears.
///
/// Signals: every change to the store or to any of its documents emits changed(); the finer signals
/// say what changed, for views that redraw selectively. All are emitted after the change.
class Store : public QObject {
    Q_OBJECT
public:
    explicit Store(QObject *parent = nullptr);
    explicit Store(StoreOptions options, QObject *parent = nullptr);
    ~Store() override;

    /// Replaces the dialog and clipboard provider (not owned; null: dialogs cancel).
    void setUi(StoreUi *ui);

    // ---- The batch ----------------------------------------------------------------------------------

    /// The documents in the order they were added.
    const QList<DocPtr> &docs() const { return m_batch.docs(); }
    /// The document with this id, or null.
    DocPtr doc(const QUuid &id) const { return m_batch.doc(id); }
    /// True while the processing loop runs (from add/reprocess until no document is queued).
    bool isProcessing() const { return m_batch.isProcessing(); }

    /// Adds files and folders: expands them (Pipeline::expandReporting, passing over what cannot be
    /// read), skips files already in the batch (Pipeline::withoutRepeats
    /// compares them by Pipeline::standardPath: absolute, cleaned, symlinks not resolved), appends one queued
    /// document per new file, selects the first new one if nothing is selected, and starts the
    /// processing loop. When nothing supported is found, sets the "No supported files found…" alert.
    void add(const QStringList &paths);

    /// Takes a drop of URLs: each local file URL is added by its own add(), scheduled on the event loop.
    /// Returns true when at least one file URL was taken; other URLs are ignored.
    bool handleDrop(const QList<QUrl> &urls);

    /// Asks the UI for files and folders and adds them; does nothing when cancelled.
    void openPanel();

    /// Reads a document again: clears its approval, puts it back to queued (keeping its fields until
    /// the new run replaces them) and starts the loop if it is not running.
    void reprocess(const DocPtr &doc);

    /// Takes a document out of the batch, undoably. If it was selected, the selection moves to the next
    /// document, else the previous one, else none. A run in progress for it finishes harmlessly. Undoing
    /// a removal (or Clear) selects the document (the first one) that came back.
    void remove(const DocPtr &doc);

    /// Empties the batch and the selection, undoably. A running document finishes in the background,
    /// unseen.
    void clearAll();

    // ---- Kept batches -------------------------------------------------------------------------------
    // A batch is kept in a file of its own as it changes, so that a day's work survives the window
    // closing (or the program being killed); a user may keep several, per client or per month.

    /// The batch file the application opens at start: the last one opened or started, else
    /// "batch.tabrix" in `dataFolder` (empty: the user's data folder + "/Tabrix").
    static QString keptBatchPath(const QString &dataFolder = QString());
    /// The open batch file; empty when the batch lives in memory only.
    QString batchFile() const { return m_batch.filePath(); }
    /// Replaces the batch with the one kept at `path` (created when missing), selects its first
    /// document and says what it holds ("212 documents, 57 approved, 12 to check") or why a file was
    /// set aside. Remembered as the batch to open next time.
    void openBatchFile(const QString &path);
    /// Asks for a batch file and opens it ("Open batch…"); asks first when the current batch lives in
    /// memory only and holds work.
    void openBatch();
    /// Asks where to keep a new, empty batch and starts it there ("New batch…"); an existing file the
    /// person chose to replace is removed first.
    void newBatch();
    /// Why the document's file needs a look (it moved, or changed since it was read); empty when not.
    QString fileNotice(const DocPtr &doc) const { return doc ? m_batch.fileNotice(doc->id()) : QString(); }
    /// Why a read document shows no page: its fileNotice, or why its file could not be loaded; empty when
    /// its pages are shown or still loading. The pages of a reopened batch's documents are loaded in the
    /// background, the selected one first, without touching what was kept.
    QString pagesNotice(const DocPtr &doc) const { return doc ? m_batch.pagesNotice(doc->id()) : QString(); }

    // ---- Work that a stray click could lose ----------------------------------------------------------
    // The asking forms below are what the window's commands call; they ask through StoreUi::confirm only
    // when there is something to lose, and a declined (or unanswered) question changes nothing.

    /// True when a document is approved or holds a hand-corrected field or line item.
    bool hasWorkToLose() const;
    /// clearAll(), after asking when hasWorkToLose().
    void clearAllAsking();
    /// reprocess(), after asking when the document holds a hand-corrected field or line item.
    void reprocessAsking(const DocPtr &doc);
    /// Approved documents that no export to a file has written as they are now, in batch order.
    QList<DocPtr> unexportedApproved() const { return m_exports.unexportedApproved(); }
    /// Whether the application may quit now: asks when the batch lives in memory only and
    /// unexportedApproved() is not empty.
    bool mayQuit();

    // ---- Review -------------------------------------------------------------------------------------

    /// Id of the selected document; null when none. An id naming no document counts as none.
    QUuid selectedID() const { return m_selectedID; }
    void setSelectedID(const QUuid &id);
    /// The selected document, or null.
    DocPtr selected() const;
    /// The approved documents in batch order: what every export writes.
    QList<DocPtr> approvedDocs() const { return m_batch.approvedDocs(); }
    bool canGoPrevious() const;
    bool canGoNext() const;
    /// "3 of 10" for the third of ten documents; empty when nothing (existing) is selected.
    QString position() const;
    /// Moves the selection by `delta` documents, clamped to the batch (no selection counts as before
    /// the first), and clears the highlight. Does nothing on an empty batch.
    void move(int delta);
    /// Approves the selected document and moves to the next one, but only when it is ready.
    void approveAndNext();
    /// Approves every ready document except likely duplicates and documents flagged for checking, as
    /// one undo step, and says how many it left out; the selection stays.
    void approveAllReady();

    // ---- Undo ---------------------------------------------------------------------------------------

    /// Undo and redo of hand changes to documents (fields, line items, approval), removals and Clear.
    /// Opening another batch starts its history afresh.
    QUndoStack *undoStack() { return m_history.stack(); }

    /// Key of the field (or "item-" + line item id) whose outline is emphasised; empty for none.
    QString highlightKey() const { return m_highlightKey; }
    void setHighlightKey(const QString &key);

    /// True while a drag hovers over the window (the view sets it; it draws the drop highlight).
    bool isTargeted() const { return m_isTargeted; }
    void setTargeted(bool targeted);

    // ---- Batch summary ------------------------------------------------------------------------------

    /// Ids of ready documents that share vendor, number and total with another ready document.
    QSet<QUuid> duplicateIDs() const { return BatchSummary::duplicateIDs(docs()); }
    /// Per-currency sums over the ready documents, sorted by currency.
    QList<CurrencyTotals> currencyTotals() const { return BatchSummary::currencyTotals(docs()); }
    /// Ids of ready documents whose amounts are in doubt.
    QSet<QUuid> flaggedIDs() const { return BatchSummary::flaggedIDs(docs()); }
    /// Flagged documents per currency (as currencyTotals names them).
    QMap<QString, qsizetype> flaggedPerCurrency() const { return BatchSummary::flaggedPerCurrency(docs()); }

    // ---- Messages -----------------------------------------------------------------------------------

    /// The message the window should show in an alert; empty when there is none.
    QString alertText() const { return m_alertText; }
    void setAlertText(const QString &text);
    void clearAlert() { setAlertText(QString()); }

    // ---- Exports -------------------------------------------------------------------------------------
    // Each writes the approved documents only, in batch order, and reports through alertText: with
    // nothing approved, "Approve at least one document first. Only approved documents are exported.";
    // a failed write, "Export failed: " + the reason. A cancelled save dialog is silent, and so is success
    // (except the clipboard copy, which always says what it copied).

    /// The table shape CSV and TSV use; starts as perDocument, not saved.
    RowLayout layout() const { return m_layout; }
    void setLayout(RowLayout layout);
    /// CSV of the current layout to a file the user picks ("tabrix-documents.csv" or
    /// "tabrix-line-items.csv" proposed).
    void exportCSV();
    /// Tab-separated text of the current layout to the clipboard.
    void copyTSV();
    /// JSON of the documents with their custom fields ("tabrix-export.json" proposed).
    void exportJSON();
    /// Excel workbook with a "Documents" and a "Line items" sheet, whatever the layout
    /// ("tabrix-export.xlsx" proposed).
    void exportXLSX();

    // ---- Custom field definitions -------------------------------------------------------------------

    /// The definitions in the order their fields appear in documents and exports.
    const QList<CustomFieldDef> &customFields() const { return m_customFields.defs(); }
    /// Replaces the definitions and saves them at once (failures to save are silent). Documents are
    /// not touched until syncCustomFields().
    void setCustomFields(const QList<CustomFieldDef> &defs);
    /// Location of "custom-fields.json"; creates its folder on every call, ignoring failure.
    QString customFieldsPath() const { return m_customFields.path(); }
    /// Brings the custom fields of every ready document in line with the definitions: renamed ones are
    /// relabelled (keeping hand corrections), deleted ones dropped and new or changed keywords extracted at
    /// once; new or changed patterns show empty until a background task has matched them (isSyncing() is
    /// true meanwhile), so a slow pattern never blocks the caller.
    void syncCustomFields();
    /// True while a sync's extraction runs in the background.
    bool isSyncing() const { return m_sync.isSyncing(); }
    /// The source tags (Extractor::customSource) of definitions whose pattern hit its matching bound on
    /// at least one document, which the editor shows as too slow.
    const QSet<QString> &slowPatterns() const { return m_customFields.slowPatterns(); }
    /// Asks for a location and writes the definitions there in the saved form; failures are silent.
    void exportCustomFields();
    /// Asks for a file and replaces the definitions with its contents, then syncs the documents. A file
    /// that is not a definitions list sets the alert "That file isn't a Tabrix custom-fields JSON file."
    void importCustomFields();

signals:
    /// Anything about the store or any of its documents changed.
    void changed();
    /// Documents were added, removed or cleared (not emitted for changes inside a document).
    void docsChanged();
    /// A document of the batch changed (status, progress, approval, fields or items).
    void docChanged(DocItem *doc);
    void selectionChanged();
    void highlightKeyChanged();
    void targetedChanged();
    void alertTextChanged();
    void customFieldsChanged();
    void layoutChanged();

private:
    void noteSlowPatterns(const QList<QUuid> &ids);
    qsizetype currentIndex() const;
    /// Shows an action's message, when it has one.
    void tell(const QString &message);
    /// "212 documents, 57 approved, 12 to check"; empty for an empty batch.
    QString summaryText() const;

    StoreUi *m_ui = nullptr;
    QString m_dataFolder;
    CustomFieldSettings m_customFields;
    Batch m_batch;
    Exports m_exports;
    CustomFieldSync m_sync;
    History m_history;

    QUuid m_selectedID;
    QString m_highlightKey;
    bool m_isTargeted = false;
    QString m_alertText;
    RowLayout m_layout = RowLayout::perDocument;

    /// Sets `member` to `value`; when that changes it, emits `signal` and then changed().
    template <class T> void assign(T &member, const T &value, void (Store::*signal)())
    {
        if (member == value)
            return;
        member = value;
        emit(this->*signal)();
        emit changed();
    }
};
