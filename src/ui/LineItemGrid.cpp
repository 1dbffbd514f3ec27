#include "LineItemGrid.h"

#include "FocusHighlight.h"
#include "Icons.h"
#include "Outlines.h"
#include "SymbolLabel.h"
#include "Theme.h"
#include "ValueEdit.h"
#include "model/Money.h"
#include "model/TypedValue.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

QLabel *secondaryCaption(const QString &text)
{
    auto *label = new QLabel(text);
    QFont font = Theme::caption();
    font.setBold(true);
    label->setFont(font);
    label->setStyleSheet(QStringLiteral("color: %1").arg(Theme::secondaryText().name()));
    return label;
}

} // namespace

LineItemGrid::LineItemGrid(const DocPtr &doc, FocusHighlight &focus, QWidget *parent)
    : QWidget(parent), m_doc(doc), m_focus(focus)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(10);

    m_table = new QWidget;
    m_grid = new QGridLayout(m_table);
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setHorizontalSpacing(6);
    m_grid->setVerticalSpacing(4);
    const QString headings[] = {QStringLiteral("Description"), QStringLiteral("Qty"),
                                QStringLiteral("Unit price"), QStringLiteral("Amount")};
    for (int c = 0; c < 4; ++c)
        m_grid->addWidget(secondaryCaption(headings[c]), 0, c);
    m_grid->setColumnStretch(LineItem::Description, 5);
    m_grid->setColumnStretch(LineItem::Quantity, 1);
    m_grid->setColumnStretch(LineItem::UnitPrice, 2);
    m_grid->setColumnStretch(LineItem::Amount, 2);
    layout->addWidget(m_table);

    m_noItems =
        new QLabel(QStringLiteral("No line items detected. Use \u201CAdd line\u201D to enter them by hand."));
    m_noItems->setObjectName(QStringLiteral("noItems"));
    m_noItems->setWordWrap(true);
    m_noItems->setStyleSheet(QStringLiteral("color: %1").arg(Theme::secondaryText().name()));
    layout->addWidget(m_noItems);

    auto *addRow = new QHBoxLayout;
    m_addLine = new QPushButton(Icons::icon(QStringLiteral("plus")), QStringLiteral("Add line"));
    m_addLine->setObjectName(QStringLiteral("addLine"));
    addRow->addWidget(m_addLine);
    addRow->addStretch();
    layout->addLayout(addRow);

    m_totalRow = new QWidget;
    auto *totalLayout = new QHBoxLayout(m_totalRow);
    totalLayout->setContentsMargins(0, 0, 0, 0);
    totalLayout->setSpacing(6);
    m_totalText = new QLabel;
    m_totalText->setObjectName(QStringLiteral("itemsTotal"));
    QFont totalFont = font();
    totalFont.setBold(true);
    m_totalText->setFont(totalFont);
    m_comparisonMark = new SymbolLabel(QStringLiteral("checkmark.circle.fill"), 14, Theme::green());
    m_comparisonText = new QLabel;
    m_comparisonText->setObjectName(QStringLiteral("itemsComparison"));
    totalLayout->addWidget(m_totalText);
    totalLayout->addSpacing(6);
    totalLayout->addWidget(m_comparisonMark);
    totalLayout->addWidget(m_comparisonText);
    totalLayout->addStretch();
    layout->addWidget(m_totalRow);

    connect(m_addLine, &QPushButton::clicked, this, &LineItemGrid::addItem);
}

QLineEdit *LineItemGrid::itemEdit(int row, LineItem::Column column) const
{
    return row >= 0 && row < m_rows.size() ? m_rows[row].edits[column] : nullptr;
}

QToolButton *LineItemGrid::removeButton(int row) const
{
    return row >= 0 && row < m_rows.size() ? m_rows[row].remove : nullptr;
}

void LineItemGrid::refresh()
{
    const QList<LineItem> &items = m_doc->items();
    bool sameItems = items.size() == m_rows.size();
    for (qsizetype i = 0; sameItems && i < items.size(); ++i)
        sameItems = items[i].id == m_rows[i].id;
    if (!sameItems)
        rebuild();
    const QLocale locale = Money::userLocale();
    for (qsizetype i = 0; i < items.size(); ++i) {
        const LineItem &item = items[i];
        const QString values[] = {item.description, item.quantity, item.unitPrice, item.amount};
        for (int c = 0; c < 4; ++c) {
            ValueEdit *edit = m_rows[i].edits[c];
            if (edit->text() != values[c])
                edit->setValue(values[c]);
            // A typed number that is not one is framed red, its reason in the tooltip and the approval bar.
            const QString problem =
                item.edited
                    ? TypedValue::problem(values[c], TypedValue::ofColumn(LineItem::Column(c)), locale)
                    : QString();
            edit->setProblem(problem);
        }
    }
    m_table->setVisible(!items.isEmpty());
    m_noItems->setVisible(items.isEmpty());
    refreshTotal();
}

void LineItemGrid::rebuild()
{
    // A box or button of the old rows may be the sender of the signal that caused the rebuild: delete
    // them later.
    for (const Row &row : std::as_const(m_rows)) {
        for (QWidget *widget : std::initializer_list<QWidget *>{row.edits[0], row.edits[1], row.edits[2],
                                                                row.edits[3], row.remove}) {
            m_grid->removeWidget(widget);
            widget->hide();
            widget->deleteLater();
        }
    }
    m_rows.clear();
    const QString placeholders[] = {QStringLiteral("Description"), QStringLiteral("Qty"),
                                    QStringLiteral("Price"), QStringLiteral("Amount")};
    const QList<LineItem> &items = m_doc->items();
    for (qsizetype i = 0; i < items.size(); ++i) {
        const QUuid id = items[i].id;
        const QString key = Outlines::itemKey(items[i]);
        Row row{id, {}, new QToolButton};
        for (int c = 0; c < 4; ++c) {
            auto *edit = new ValueEdit;
            edit->setPlaceholderText(placeholders[c]);
            if (c != LineItem::Description)
                edit->setAlignment(Qt::AlignRight);
            if (c == LineItem::Quantity) // four digits, with the frame and margins around them
                edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance(QStringLiteral("0000")) + 18);
            m_grid->addWidget(edit, int(i) + 1, c);
            const auto column = LineItem::Column(c);
            connect(edit, &QLineEdit::textEdited, this,
                    [this, id, column](const QString &text) { m_doc->editItem(id, column, text); });
            connect(edit, &QLineEdit::editingFinished, this, [this, id, column] { commitTyped(id, column); });
            m_focus.watch(edit, key);
            edit->installEventFilter(this);
            row.edits[c] = edit;
        }
        row.remove->setIcon(Icons::icon(QStringLiteral("minus.circle"), Theme::red()));
        row.remove->setToolTip(QStringLiteral("Remove this line"));
        row.remove->setAutoRaise(true);
        // Out of the Tab chain: Tab from the last amount must not land where Space deletes the line.
        row.remove->setFocusPolicy(Qt::NoFocus);
        m_grid->addWidget(row.remove, int(i) + 1, 4);
        connect(row.remove, &QToolButton::clicked, this, [this, id] { m_doc->removeItem(id); });
        m_rows.append(row);
    }
}

bool LineItemGrid::eventFilter(QObject *watched, QEvent *event)
{
    // Delete in an empty box removes its line: there is no text it could delete instead.
    if (event->type() != QEvent::KeyPress || static_cast<QKeyEvent *>(event)->key() != Qt::Key_Delete ||
        static_cast<QKeyEvent *>(event)->modifiers() != Qt::NoModifier)
        return QWidget::eventFilter(watched, event);
    for (qsizetype i = 0; i < m_rows.size(); ++i) {
        const Row &row = m_rows[i];
        const auto column = std::find(std::begin(row.edits), std::end(row.edits), watched);
        if (column == std::end(row.edits) || !(*column)->text().isEmpty())
            continue;
        removeRow(i, int(column - std::begin(row.edits)));
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void LineItemGrid::removeRow(qsizetype row, int column)
{
    // The focus stays in the grid, on the same column of the line that takes the removed one's place,
    // else of the one above, else on "Add line".
    m_doc->removeItem(m_rows[row].id); // the document redraws the rows at once
    const qsizetype next = std::min(row, m_rows.size() - 1);
    if (next >= 0)
        m_rows[next].edits[column]->setFocus(Qt::TabFocusReason);
    else
        m_addLine->setFocus(Qt::TabFocusReason);
}

void LineItemGrid::commitTyped(const QUuid &id, LineItem::Column column)
{
    for (const LineItem &item : m_doc->items()) {
        if (item.id != id || !item.edited)
            continue;
        const QString text = column == LineItem::Quantity    ? item.quantity
                             : column == LineItem::UnitPrice ? item.unitPrice
                             : column == LineItem::Amount    ? item.amount
                                                             : QString();
        const std::optional<QString> exported =
            TypedValue::exported(text, TypedValue::ofColumn(column), Money::userLocale());
        if (column != LineItem::Description && exported && *exported != text)
            m_doc->editItem(id, column, *exported);
    }
}

void LineItemGrid::refreshTotal()
{
    const std::optional<ItemsTotal> total = m_doc->itemsTotal();
    m_totalRow->setVisible(total.has_value());
    if (!total)
        return;
    m_totalText->setText(QStringLiteral("Items total ") + Money::pretty(total->total));
    const bool compared = total->subtotal.has_value();
    m_comparisonMark->setVisible(compared);
    m_comparisonText->setVisible(compared);
    if (!compared)
        return;
    const QColor color = Theme::color(total->matches() ? Theme::Tone::Green : Theme::Tone::Orange);
    m_comparisonMark->setSymbol(total->matches() ? QStringLiteral("checkmark.circle.fill")
                                                 : QStringLiteral("exclamationmark.triangle.fill"),
                                color);
    m_comparisonText->setText(total->matches() ? QStringLiteral("matches subtotal")
                                               : QStringLiteral("differs from subtotal ") +
                                                     Money::pretty(*total->subtotal));
    m_comparisonText->setStyleSheet(QStringLiteral("color: %1").arg(color.name()));
}

void LineItemGrid::addItem()
{
    // The document redraws the rows as it adds the item; the new row takes the focus.
    const QUuid id = m_doc->addItem();
    for (const Row &row : std::as_const(m_rows)) {
        if (row.id == id)
            row.edits[LineItem::Description]->setFocus();
    }
}
