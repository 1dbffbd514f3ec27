#include "DocItem.h"

#include "Doubts.h"
#include "Money.h"
#include "TypedValue.h"

#include <QFileInfo>

DocItem::DocItem(const QString &path, QObject *parent) : QObject(parent), m_path(path) {}

QString DocItem::fileName() const
{
    return QFileInfo(m_path).fileName();
}

void DocItem::setStatus(const DocStatus &status)
{
    m_status = status;
    emit changed();
}

void DocItem::setProgress(double progress)
{
    m_progress = progress;
    emit changed();
}

void DocItem::setApproved(bool approved)
{
    if (approved && !approvalBlock().isEmpty())
        return;
    m_approved = approved;
    emit changed();
}

void DocItem::setFields(const QList<Field> &fields)
{
    m_fields = fields;
    emit changed();
}

void DocItem::setItems(const QList<LineItem> &items)
{
    m_items = items;
    emit changed();
}

bool ItemsTotal::matches() const
{
    return subtotal && Doubts::withinACent(total, *subtotal);
}

void DocItem::editField(const QString &key, const QString &text)
{
    for (Field &f : m_fields) {
        if (f.key == key) {
            f.value = text;
            f.edited = true;
            emit changed();
            return;
        }
    }
}

void DocItem::editItem(const QUuid &id, LineItem::Column column, const QString &text)
{
    for (LineItem &item : m_items) {
        if (item.id != id)
            continue;
        QString *columns[] = {&item.description, &item.quantity, &item.unitPrice, &item.amount};
        *columns[column] = text;
        item.edited = true;
        emit changed();
        return;
    }
}

QUuid DocItem::addItem()
{
    LineItem item;
    item.quantity = QStringLiteral("1");
    item.edited = true;
    m_items.append(item);
    emit changed();
    return item.id;
}

void DocItem::removeItem(const QUuid &id)
{
    if (m_items.removeIf([&](const LineItem &item) { return item.id == id; }) > 0)
        emit changed();
}

std::optional<ItemsTotal> DocItem::itemsTotal() const
{
    const std::optional<double> sum = Doubts::itemsSum(m_items);
    if (!sum)
        return std::nullopt;
    return ItemsTotal{*sum, Money::parse(value(QStringLiteral("subtotal")))};
}

QString DocItem::value(const QString &key) const
{
    return fieldValue(m_fields, key);
}

namespace {

// The typed value in its exported form, or as typed when it is not of its kind (approval stops that).
QString exportedForm(const QString &text, TypedValue::Kind kind)
{
    return TypedValue::exported(text, kind, Money::userLocale()).value_or(text);
}

} // namespace

DocRecord DocItem::record() const
{
    DocRecord record{m_path, m_fields, m_items};
    for (Field &f : record.fields) {
        if (f.edited && !f.isCustom)
            f.value = exportedForm(f.value, TypedValue::ofField(f.key));
    }
    for (LineItem &item : record.items) {
        if (!item.edited)
            continue;
        item.quantity = exportedForm(item.quantity, TypedValue::Kind::Quantity);
        item.unitPrice = exportedForm(item.unitPrice, TypedValue::Kind::Amount);
        item.amount = exportedForm(item.amount, TypedValue::Kind::Amount);
    }
    return record;
}

QString DocItem::approvalBlock() const
{
    const QLocale locale = Money::userLocale();
    for (const Field &f : m_fields) {
        if (!f.edited || f.isCustom)
            continue;
        if (const QString problem = TypedValue::problem(f.value, TypedValue::ofField(f.key), locale);
            !problem.isEmpty())
            return f.label + QStringLiteral(": ") + problem;
    }
    for (qsizetype i = 0; i < m_items.size(); ++i) {
        const LineItem &item = m_items[i];
        if (!item.edited)
            continue;
        const std::pair<LineItem::Column, const QString *> typed[] = {{LineItem::Quantity, &item.quantity},
                                                                      {LineItem::UnitPrice, &item.unitPrice},
                                                                      {LineItem::Amount, &item.amount}};
        for (const auto &[column, text] : typed) {
            if (const QString problem = TypedValue::problem(*text, TypedValue::ofColumn(column), locale);
                !problem.isEmpty())
                return QStringLiteral("Line %1: ").arg(i + 1) + problem;
        }
    }
    return {};
}
