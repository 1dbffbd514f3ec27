#pragma once

#include "store/Store.h"

#include <QWidget>

class ConfidenceBadge;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;
class SymbolLabel;
class ValueEdit;

/// The right half of the review screen: every field of the document with its confidence badge, the
/// editable line-item table and the items total. Each edit goes straight into the document and marks
/// the field or item edited; the focused entry becomes the store's highlight key.
class FormPane : public QWidget {
    Q_OBJECT
public:
    FormPane(Store &store, const DocPtr &doc, QWidget *parent = nullptr);

    QLineEdit *fieldEdit(const QString &key) const;
    ConfidenceBadge *badge(const QString &key) const;
    QLineEdit *itemEdit(int row, LineItem::Column column) const;
    QToolButton *removeButton(int row) const;
    QPushButton *addLineButton() const { return m_addLine; }
    int itemRowCount() const { return int(m_itemRows.size()); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct FieldRow {
        QString key;
        QLabel *label;
        ValueEdit *edit;
        ConfidenceBadge *badge;
    };
    struct ItemRow {
        QUuid id;
        ValueEdit *edits[4];
        QToolButton *remove;
    };

    void refresh();
    void showDuplicate();
    void rebuildFields();
    void rebuildItems();
    void refreshItemsTotal();
    void addItem();
    void watchFocus(QWidget *edit, const QString &key);

    Store &m_store;
    DocPtr m_doc;

    QWidget *m_duplicate;
    QGridLayout *m_fieldsGrid;
    QList<FieldRow> m_fieldRows;
    QWidget *m_itemsTable;
    QGridLayout *m_itemsGrid;
    QList<ItemRow> m_itemRows;
    QLabel *m_noItems;
    QPushButton *m_addLine;
    QWidget *m_totalRow;
    QLabel *m_totalText;
    SymbolLabel *m_comparisonMark;
    QLabel *m_comparisonText;
};
