#pragma once

#include "store/Store.h"

#include <QAbstractListModel>
#include <QColor>
#include <QSet>
#include <QUuid>

/// The batch queue as a list model: one row per document of the store, in queue order. Rows follow
/// the documents' status and progress as they change; the delegate draws them from the roles below.
class QueueModel : public QAbstractListModel {
    Q_OBJECT
public:
    enum Role {
        StatusTextRole = Qt::UserRole + 1, ///< "Approved", or the status label
        TintRole,                          ///< QColor of the icon and status text
        StatusSecondaryRole,               ///< bool: the status text is drawn in the secondary colour
        AmountRole,                        ///< currency and total of a ready document, or empty
        ProgressRole,                      ///< double 0…1 while processing, or -1 when no bar is shown
        DuplicateRole,                     ///< bool: a likely duplicate of another document
        ApprovedRole,                      ///< bool
        IconNameRole,                      ///< "doc.text" for PDFs, "photo" otherwise
        IdRole,                            ///< the document's QUuid
        FlaggedRole, ///< bool: a value needs a look ("Check", a failed pattern, a bad entry)
    };

    explicit QueueModel(Store &store, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;

    DocPtr docAt(int row) const;
    /// The row of the document with this id, or -1.
    int rowOf(const QUuid &id) const;

    // What a row shows, as functions of the document alone.
    static QString statusText(const DocItem &doc);
    static QColor tint(const DocItem &doc);
    static QString amountText(const DocItem &doc);
    static QString iconName(const DocItem &doc);

private:
    void docChanged(DocItem *doc);
    void refreshDuplicates();

    Store &m_store;
    QList<DocPtr> m_docs; // the store's list as last announced, so rows stay valid between signals
    QSet<QUuid> m_duplicates;
};
