#include "FormPane.h"

#include "ConfidenceBadge.h"
#include "Icons.h"
#include "Outlines.h"
#include "SymbolLabel.h"
#include "Theme.h"
#include "ValueEdit.h"
#include "model/Doubts.h"
#include "model/Money.h"

#include <QEvent>
#include <QFocusEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr const char *keyProperty = "tabrixKey";

// Widgets of a rebuilt grid may be the sender of the signal that caused the rebuild: delete them later.
void discard(QWidget *widget)
{
    widget->hide();
    widget->deleteLater();
}

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

FormPane::FormPane(Store &store, const DocPtr &doc, QWidget *parent)
    : QWidget(parent), m_store(store), m_doc(doc)
{
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 14, 16, 16);
    layout->setSpacing(10);

    auto *hint = new QLabel(QStringLiteral("Review and correct the fields, then approve."));
    hint->setStyleSheet(QStringLiteral("color: %1").arg(Theme::secondaryText().name()));
    layout->addWidget(hint);

    m_duplicate = new QFrame;
    m_duplicate->setObjectName(QStringLiteral("duplicateWarning"));
    m_duplicate->setStyleSheet(QStringLiteral("#duplicateWarning { background: %1; border-radius: 6px; }")
                                   .arg(Theme::faded(Theme::orange(), 0.12).name(QColor::HexArgb)));
    auto *dupLayout = new QHBoxLayout(m_duplicate);
    dupLayout->setContentsMargins(10, 7, 10, 7);
    dupLayout->addWidget(
        new SymbolLabel(QStringLiteral("exclamationmark.triangle.fill"), 16, Theme::orange()));
    auto *dupText = new QLabel(
        QStringLiteral("Likely duplicate: another document has the same vendor, number and total."));
    dupText->setWordWrap(true);
    dupLayout->addWidget(dupText, 1);
    layout->addWidget(m_duplicate);

    m_fieldsGrid = new QGridLayout;
    m_fieldsGrid->setHorizontalSpacing(10);
    m_fieldsGrid->setVerticalSpacing(6);
    m_fieldsGrid->setColumnStretch(1, 1);
    layout->addLayout(m_fieldsGrid);

    layout->addSpacing(6);
    m_itemsTable = new QWidget;
    m_itemsGrid = new QGridLayout(m_itemsTable);
    m_itemsGrid->setContentsMargins(0, 0, 0, 0);
    m_itemsGrid->setHorizontalSpacing(6);
    m_itemsGrid->setVerticalSpacing(4);
    const QString headings[] = {QStringLiteral("Description"), QStringLiteral("Qty"),
                                QStringLiteral("Unit price"), QStringLiteral("Amount")};
    for (int c = 0; c < 4; ++c)
        m_itemsGrid->addWidget(secondaryCaption(headings[c]), 0, c);
    m_itemsGrid->setColumnStretch(LineItem::Description, 5);
    m_itemsGrid->setColumnStretch(LineItem::Quantity, 1);
    m_itemsGrid->setColumnStretch(LineItem::UnitPrice, 2);
    m_itemsGrid->setColumnStretch(LineItem::Amount, 2);
    layout->addWidget(m_itemsTable);

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
    layout->addStretch();

    connect(m_addLine, &QPushButton::clicked, this, &FormPane::addItem);
    connect(m_doc.get(), &DocItem::changed, this, &FormPane::refresh);
    // Duplicates depend on the other documents too.
    connect(&m_store, &Store::docChanged, this, [this](DocItem *other) {
        if (other != m_doc.get())
            showDuplicate();
    });
    refresh();
}

QLineEdit *FormPane::fieldEdit(const QString &key) const
{
    for (const FieldRow &row : m_fieldRows) {
        if (row.key == key)
            return row.edit;
    }
    return nullptr;
}

ConfidenceBadge *FormPane::badge(const QString &key) const
{
    for (const FieldRow &row : m_fieldRows) {
        if (row.key == key)
            return row.badge;
    }
    return nullptr;
}

QLineEdit *FormPane::itemEdit(int row, LineItem::Column column) const
{
    return row >= 0 && row < m_itemRows.size() ? m_itemRows[row].edits[column] : nullptr;
}

QToolButton *FormPane::removeButton(int row) const
{
    return row >= 0 && row < m_itemRows.size() ? m_itemRows[row].remove : nullptr;
}

void FormPane::showDuplicate()
{
    const bool duplicate = m_store.duplicateIDs().contains(m_doc->id());
    if (duplicate) {
        // Once shown, the warning keeps its place: fixing the duplicate must not pull the form up
        // under the pointer.
        QSizePolicy policy = m_duplicate->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        m_duplicate->setSizePolicy(policy);
    }
    m_duplicate->setVisible(duplicate);
}

void FormPane::refresh()
{
    showDuplicate();

    const QList<Field> &fields = m_doc->fields();
    bool sameFields = fields.size() == m_fieldRows.size();
    for (qsizetype i = 0; sameFields && i < fields.size(); ++i)
        sameFields = fields[i].key == m_fieldRows[i].key;
    if (!sameFields)
        rebuildFields();
    const QList<Doubt> doubts = Doubts::of(fields, m_doc->items());
    for (qsizetype i = 0; i < fields.size(); ++i) {
        const Field &f = fields[i];
        FieldRow &row = m_fieldRows[i];
        row.label->setText(f.label);
        if (row.edit->text() != f.value)
            row.edit->setValue(f.value);
        row.badge->setState(f.confidence, f.edited, f.value.isEmpty(), Doubts::reasonsFor(doubts, f.key));
    }

    const QList<LineItem> &items = m_doc->items();
    bool sameItems = items.size() == m_itemRows.size();
    for (qsizetype i = 0; sameItems && i < items.size(); ++i)
        sameItems = items[i].id == m_itemRows[i].id;
    if (!sameItems)
        rebuildItems();
    for (qsizetype i = 0; i < items.size(); ++i) {
        const LineItem &item = items[i];
        const QString values[] = {item.description, item.quantity, item.unitPrice, item.amount};
        for (int c = 0; c < 4; ++c) {
            if (m_itemRows[i].edits[c]->text() != values[c])
                m_itemRows[i].edits[c]->setValue(values[c]);
        }
    }
    m_itemsTable->setVisible(!items.isEmpty());
    m_noItems->setVisible(items.isEmpty());
    refreshItemsTotal();
}

void FormPane::rebuildFields()
{
    for (const FieldRow &row : std::as_const(m_fieldRows)) {
        m_fieldsGrid->removeWidget(row.label);
        m_fieldsGrid->removeWidget(row.edit);
        m_fieldsGrid->removeWidget(row.badge);
        discard(row.label);
        discard(row.edit);
        discard(row.badge);
    }
    m_fieldRows.clear();
    const QList<Field> &fields = m_doc->fields();
    for (qsizetype i = 0; i < fields.size(); ++i) {
        const QString key = fields[i].key;
        FieldRow row{key, new QLabel, new ValueEdit, new ConfidenceBadge};
        row.edit->setObjectName(QStringLiteral("field-") + key);
        row.edit->setClearButtonEnabled(false);
        row.label->setBuddy(row.edit);
        row.label->setMinimumWidth(84);
        m_fieldsGrid->addWidget(row.label, int(i), 0);
        m_fieldsGrid->addWidget(row.edit, int(i), 1);
        m_fieldsGrid->addWidget(row.badge, int(i), 2, Qt::AlignVCenter);
        connect(row.edit, &QLineEdit::textEdited, this,
                [this, key](const QString &text) { m_doc->editField(key, text); });
        watchFocus(row.edit, key);
        m_fieldRows.append(row);
    }
}

void FormPane::rebuildItems()
{
    for (const ItemRow &row : std::as_const(m_itemRows)) {
        for (QLineEdit *edit : row.edits) {
            m_itemsGrid->removeWidget(edit);
            discard(edit);
        }
        m_itemsGrid->removeWidget(row.remove);
        discard(row.remove);
    }
    m_itemRows.clear();
    const QString placeholders[] = {QStringLiteral("Description"), QStringLiteral("Qty"),
                                    QStringLiteral("Price"), QStringLiteral("Amount")};
    const QList<LineItem> &items = m_doc->items();
    for (qsizetype i = 0; i < items.size(); ++i) {
        const QUuid id = items[i].id;
        const QString key = Outlines::itemKey(items[i]);
        ItemRow row{id, {}, new QToolButton};
        for (int c = 0; c < 4; ++c) {
            auto *edit = new ValueEdit;
            edit->setPlaceholderText(placeholders[c]);
            if (c != LineItem::Description)
                edit->setAlignment(Qt::AlignRight);
            if (c == LineItem::Quantity) // four digits, with the frame and margins around them
                edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance(QStringLiteral("0000")) + 18);
            m_itemsGrid->addWidget(edit, int(i) + 1, c);
            const auto column = LineItem::Column(c);
            connect(edit, &QLineEdit::textEdited, this,
                    [this, id, column](const QString &text) { m_doc->editItem(id, column, text); });
            watchFocus(edit, key);
            row.edits[c] = edit;
        }
        row.remove->setIcon(Icons::icon(QStringLiteral("minus.circle"), Theme::red()));
        row.remove->setToolTip(QStringLiteral("Remove this line"));
        row.remove->setAutoRaise(true);
        m_itemsGrid->addWidget(row.remove, int(i) + 1, 4);
        connect(row.remove, &QToolButton::clicked, this, [this, id] { m_doc->removeItem(id); });
        m_itemRows.append(row);
    }
}

void FormPane::refreshItemsTotal()
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
    const QColor color = total->matches() ? Theme::green() : Theme::orange();
    m_comparisonMark->setSymbol(total->matches() ? QStringLiteral("checkmark.circle.fill")
                                                 : QStringLiteral("exclamationmark.triangle.fill"),
                                color);
    m_comparisonText->setText(total->matches() ? QStringLiteral("matches subtotal")
                                               : QStringLiteral("differs from subtotal ") +
                                                     Money::pretty(*total->subtotal));
    m_comparisonText->setStyleSheet(QStringLiteral("color: %1").arg(color.name()));
}

void FormPane::addItem()
{
    // The document redraws the rows as it adds the item; the new row takes the focus.
    const QUuid id = m_doc->addItem();
    for (const ItemRow &row : std::as_const(m_itemRows)) {
        if (row.id == id)
            row.edits[LineItem::Description]->setFocus();
    }
}

void FormPane::watchFocus(QWidget *edit, const QString &key)
{
    edit->setProperty(keyProperty, key);
    edit->installEventFilter(this);
}

bool FormPane::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        m_store.setHighlightKey(watched->property(keyProperty).toString());
    } else if (event->type() == QEvent::FocusOut) {
        // Leaving for a menu or another window keeps the emphasis; leaving the entry clears it.
        const auto reason = static_cast<QFocusEvent *>(event)->reason();
        const QString key = watched->property(keyProperty).toString();
        if (reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason &&
            m_store.highlightKey() == key)
            m_store.setHighlightKey(QString());
    }
    return QWidget::eventFilter(watched, event);
}
