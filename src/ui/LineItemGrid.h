#pragma once

#include "store/DocPtr.h"

#include <QWidget>

class FocusHighlight;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;
class SymbolLabel;
class ValueEdit;

/// The editable line-item table of the review form: a row of boxes per item with its remove button,
/// "Add line" below, and the items total compared with the subtotal. Each edit goes straight into the
/// document; each box highlights its item while focused. The remove buttons take no keyboard focus;
/// Delete in an empty box removes its line. The form calls `refresh` when the document
/// changes, after its fields, so the fields come first in the tab order.
class LineItemGrid : public QWidget {
    Q_OBJECT
public:
    LineItemGrid(const DocPtr &doc, FocusHighlight &focus, QWidget *parent = nullptr);

    QLineEdit *itemEdit(int row, LineItem::Column column) const;
    QToolButton *removeButton(int row) const;
    QPushButton *addLineButton() const { return m_addLine; }
    int rowCount() const { return int(m_rows.size()); }

    /// Brings the rows and the total in line with the document.
    void refresh();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Row {
        QUuid id;
        ValueEdit *edits[4];
        QToolButton *remove;
    };

    void rebuild();
    void refreshTotal();
    void addItem();
    /// Puts a valid number typed into a column of item `id` in the form exports write.
    void commitTyped(const QUuid &id, LineItem::Column column);
    /// Removes line `row` and keeps the focus in the grid, in `column`.
    void removeRow(qsizetype row, int column);

    DocPtr m_doc;
    FocusHighlight &m_focus;
    QWidget *m_table;
    QGridLayout *m_grid;
    QList<Row> m_rows;
    QLabel *m_noItems;
    QPushButton *m_addLine;
    QWidget *m_totalRow;
    QLabel *m_totalText;
    SymbolLabel *m_comparisonMark;
    QLabel *m_comparisonText;
};
