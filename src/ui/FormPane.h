#pragma once

#include "store/Store.h"

#include <QWidget>
#include <optional>

class ConfidenceBadge;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;
class SymbolLabel;
class ValueEdit;

/// The sum of a document's line items and how it compares with the subtotal.
struct ItemsTotal {
    double total = 0.0;             ///< sum of the item amounts that parse
    std::optional<double> subtotal; ///< the document's subtotal, when it parses
    bool matches() const;           ///< within one cent of the subtotal (needs a subtotal)

    /// Nothing when no item amount parses: then no total is shown.
    static std::optional<ItemsTotal> of(const QList<LineItem> &items, const QString &subtotal);
    /// "Items total 15.00".
    QString totalText() const;
    /// "matches subtotal", "differs from subtotal 15.02", or empty without a subtotal.
    QString comparisonText() const;
};

/// The right half of the review screen: every field of the document with its confidence badge, the
/// editable line-item table and the items total. Each edit goes straight into the document and marks
/// the field or item edited; the focused entry becomes the store's highlight key.
class FormPane : public QWidget {
    Q_OBJECT
public:
    enum ItemColumn { Description, Quantity, UnitPrice, Amount };

    FormPane(Store &store, const DocPtr &doc, QWidget *parent = nullptr);

    QLineEdit *fieldEdit(const QString &key) const;
    ConfidenceBadge *badge(const QString &key) const;
    QLineEdit *itemEdit(int row, ItemColumn column) const;
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
    void editField(const QString &key, const QString &text);
    void editItem(const QUuid &id, ItemColumn column, const QString &text);
    void removeItem(const QUuid &id);
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
    QUuid m_focusAfterRebuild;
};
