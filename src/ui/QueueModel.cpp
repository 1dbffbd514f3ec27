#include "QueueModel.h"

#include "Flags.h"
#include "Theme.h"
#include "model/Money.h"

#include <QFileInfo>

QueueModel::QueueModel(Store &store, QObject *parent) : QAbstractListModel(parent), m_store(store)
{
    m_docs = store.docs();
    m_duplicates = store.duplicateIDs();
    connect(&store, &Store::docsChanged, this, [this] {
        beginResetModel();
        m_docs = m_store.docs();
        m_duplicates = m_store.duplicateIDs();
        endResetModel();
    });
    connect(&store, &Store::docChanged, this, &QueueModel::docChanged);
}

int QueueModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_docs.size());
}

DocPtr QueueModel::docAt(int row) const
{
    return row >= 0 && row < m_docs.size() ? m_docs[row] : nullptr;
}

int QueueModel::rowOf(const QUuid &id) const
{
    for (qsizetype i = 0; i < m_docs.size(); ++i) {
        if (m_docs[i]->id() == id)
            return int(i);
    }
    return -1;
}

QVariant QueueModel::data(const QModelIndex &index, int role) const
{
    const DocPtr doc = docAt(index.row());
    if (!doc || index.parent().isValid())
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return doc->fileName();
    case Qt::ToolTipRole:
        return doc->path();
    case StatusTextRole:
        return statusText(*doc);
    case TintRole:
        return tint(*doc);
    case StatusSecondaryRole:
        return doc->status().kind() == DocStatus::Ready;
    case AmountRole:
        return amountText(*doc);
    case ProgressRole:
        return doc->status().isInProgress() ? doc->progress() : -1.0;
    case DuplicateRole:
        return m_duplicates.contains(doc->id());
    case ApprovedRole:
        return doc->approved();
    case IconNameRole:
        return iconName(*doc);
    case IdRole:
        return doc->id();
    case FlaggedRole:
        return doc->status().kind() == DocStatus::Ready &&
               (Flags::marked(*doc, m_store.slowPatterns()) || !m_store.fileNotice(doc).isEmpty());
    default:
        return {};
    }
}

QString QueueModel::statusText(const DocItem &doc)
{
    if (doc.status().kind() == DocStatus::Ready && doc.approved())
        return QStringLiteral("Approved");
    return doc.status().label();
}

QColor QueueModel::tint(const DocItem &doc)
{
    switch (doc.status().kind()) {
    case DocStatus::Ready:
        return doc.approved() ? Theme::green() : Theme::blue();
    case DocStatus::Failed:
        return Theme::red();
    default:
        return Theme::accent();
    }
}

QString QueueModel::amountText(const DocItem &doc)
{
    if (doc.status().kind() != DocStatus::Ready)
        return {};
    const std::optional<double> total = Money::parse(doc.value(QStringLiteral("total")));
    if (!total)
        return {};
    return doc.value(QStringLiteral("currency")) + QLatin1Char(' ') + Money::pretty(*total);
}

QString QueueModel::iconName(const DocItem &doc)
{
    return QFileInfo(doc.path()).suffix().toLower() == QLatin1String("pdf") ? QStringLiteral("doc.text")
                                                                            : QStringLiteral("photo");
}

void QueueModel::docChanged(DocItem *doc)
{
    for (qsizetype i = 0; i < m_docs.size(); ++i) {
        if (m_docs[i].get() == doc) {
            const QModelIndex at = index(int(i));
            emit dataChanged(at, at);
            break;
        }
    }
    refreshDuplicates();
}

void QueueModel::refreshDuplicates()
{
    // One document's edit can make or unmake a duplicate of another, so every row may need redrawing.
    QSet<QUuid> now = m_store.duplicateIDs();
    if (now == m_duplicates)
        return;
    m_duplicates = std::move(now);
    if (!m_docs.isEmpty())
        emit dataChanged(index(0), index(int(m_docs.size()) - 1), {DuplicateRole});
}
