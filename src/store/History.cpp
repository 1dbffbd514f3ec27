#include "History.h"

void DocState::applyTo(DocItem &doc) const
{
    doc.setFields(fields);
    doc.setItems(items);
    doc.setApproved(approved);
}

namespace {

/// What a step changed when it is one field, one line item or the approval; empty for anything else.
/// Typing changes a field once per key: steps changing the same one merge into one.
QString changeKey(const DocState &before, const DocState &after)
{
    if (before.approved != after.approved)
        return before.fields == after.fields && before.items == after.items ? QStringLiteral("approval")
                                                                            : QString();
    QString key;
    if (before.items == after.items && before.fields.size() == after.fields.size()) {
        for (qsizetype i = 0; i < before.fields.size(); ++i) {
            if (before.fields[i] == after.fields[i])
                continue;
            if (!key.isEmpty() || before.fields[i].key != after.fields[i].key)
                return QString();
            key = QStringLiteral("field|") + after.fields[i].key;
        }
    } else if (before.fields == after.fields && before.items.size() == after.items.size()) {
        for (qsizetype i = 0; i < before.items.size(); ++i) {
            if (before.items[i] == after.items[i])
                continue;
            if (!key.isEmpty() || before.items[i].id != after.items[i].id)
                return QString();
            key = QStringLiteral("item|") + after.items[i].id.toString();
        }
    }
    return key;
}

} // namespace

/// One hand change to one document. Made before it is recorded, so its first redo does nothing.
class DocStep : public QUndoCommand {
public:
    DocStep(History &history, const DocPtr &doc, DocState before, DocState after)
        : QUndoCommand(QStringLiteral("Edit")), m_history(history), m_doc(doc), m_before(std::move(before)),
          m_after(std::move(after)), m_key(changeKey(m_before, m_after))
    {
        if (m_key == QLatin1String("approval"))
            setText(m_after.approved ? QStringLiteral("Approve") : QStringLiteral("Undo Approval"));
    }
    int id() const override { return m_key.isEmpty() ? -1 : 1; }
    bool mergeWith(const QUndoCommand *other) override
    {
        const auto *next = static_cast<const DocStep *>(other);
        if (next->m_doc.lock() != m_doc.lock() || next->m_key != m_key || m_key == QLatin1String("approval"))
            return false;
        m_after = next->m_after;
        return true;
    }
    void undo() override { put(m_before); }
    void redo() override
    {
        if (m_done)
            put(m_after);
        m_done = true;
    }

private:
    void put(const DocState &state)
    {
        const DocPtr doc = m_doc.lock();
        if (!doc)
            return;
        m_history.beginQuiet();
        state.applyTo(*doc);
        m_history.m_seen.insert(doc->id(), state);
        m_history.endQuiet();
    }

    History &m_history;
    std::weak_ptr<DocItem> m_doc;
    DocState m_before, m_after;
    QString m_key;
    bool m_done = false;
};

/// Documents taken out of the batch (one, or all for Clear), kept whole so undo puts them back in place.
class RemoveStep : public QUndoCommand {
public:
    RemoveStep(History &history, QList<DocPtr> docs, qsizetype index, bool all, const QString &text)
        : QUndoCommand(text), m_history(history), m_docs(std::move(docs)), m_index(index), m_all(all)
    {
    }
    void undo() override
    {
        m_history.m_batch.insert(m_docs, m_index);
        emit m_history.restored(m_docs);
    }
    void redo() override
    {
        if (m_all)
            m_history.m_batch.clear();
        else
            m_history.m_batch.remove(m_docs.first());
    }

private:
    History &m_history;
    QList<DocPtr> m_docs;
    qsizetype m_index;
    bool m_all;
};

History::History(Batch &batch, QObject *parent) : QObject(parent), m_batch(batch)
{
    connect(&batch, &Batch::docChanged, this, &History::noteChange);
    connect(&batch, &Batch::docsChanged, this, &History::noteDocs);
}

void History::reset()
{
    m_stack.clear();
    m_seen.clear();
    noteDocs();
}

void History::endQuiet()
{
    --m_quiet;
}

void History::noteDocs()
{
    for (const DocPtr &d : m_batch.docs()) {
        if (d->status().kind() == DocStatus::Ready && !m_seen.contains(d->id()))
            m_seen.insert(d->id(), DocState::of(*d));
    }
}

void History::noteChange(DocItem *doc)
{
    if (doc->status().kind() != DocStatus::Ready) {
        m_seen.remove(doc->id());
        return;
    }
    DocState now = DocState::of(*doc);
    const auto seen = m_seen.find(doc->id());
    // Just read: nothing of the person's to undo yet.
    if (seen == m_seen.end()) {
        m_seen.insert(doc->id(), now);
        return;
    }
    if (*seen == now)
        return;
    DocState before = std::exchange(*seen, now);
    if (m_quiet > 0)
        return;
    m_stack.push(new DocStep(*this, m_batch.doc(doc->id()), std::move(before), std::move(now)));
}

void History::remove(const DocPtr &doc)
{
    const qsizetype index = m_batch.docs().indexOf(doc);
    if (!doc || index < 0)
        return;
    m_stack.push(new RemoveStep(*this, {doc}, index, false,
                                QStringLiteral("Remove \u201C") + doc->fileName() + u'\u201D'));
}

void History::clear()
{
    if (m_batch.docs().isEmpty()) {
        m_batch.clear();
        return;
    }
    m_stack.push(new RemoveStep(*this, m_batch.docs(), 0, true, QStringLiteral("Clear")));
}
