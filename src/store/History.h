#pragma once

#include "Batch.h"

#include <QHash>
#include <QObject>
#include <QUndoStack>

/// What of a document a person changes by hand, and so what undo puts back.
struct DocState {
    QList<Field> fields;
    QList<LineItem> items;
    bool approved = false;
    bool operator==(const DocState &) const = default;

    static DocState of(const DocItem &doc) { return {doc.fields(), doc.items(), doc.approved()}; }
    void applyTo(DocItem &doc) const;
};

/// Undo and redo for the batch (a QUndoStack): hand changes to a read document (fields, line items,
/// approval) are recorded as they happen, by comparing the document with how it was last seen, so the
/// views edit documents directly; removals and Clear are recorded by the calls below. Changes the program
/// makes itself (reading, re-syncing custom fields, re-reading) are made quietly and not recorded.
/// Lives on the main thread.
class History : public QObject {
    Q_OBJECT
public:
    explicit History(Batch &batch, QObject *parent = nullptr);

    QUndoStack *stack() { return &m_stack; }
    /// Forgets every step and takes the batch's documents as they are (a batch was opened).
    void reset();

    /// Changes made between these two calls are not recorded; the calls nest.
    void beginQuiet() { ++m_quiet; }
    void endQuiet();

    /// Takes a document out of the batch, undoably.
    void remove(const DocPtr &doc);
    /// Empties the batch, undoably.
    void clear();

signals:
    /// Documents taken out came back (a removal or Clear was undone).
    void restored(const QList<DocPtr> &docs);

private:
    void noteChange(DocItem *doc);
    void noteDocs();
    friend class DocStep;
    friend class RemoveStep;

    Batch &m_batch;
    QUndoStack m_stack;
    /// Per read (Ready) document, its state as last seen.
    QHash<QUuid, DocState> m_seen;
    int m_quiet = 0;
};
