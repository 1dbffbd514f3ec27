#include "DocItem.h"

#include "Doubts.h"
#include "Money.h"

#include <QFileInfo>

DocItem::DocItem(const QString &path, QObject *parent) : QObject(parent), m_path(path) {}

DocItem::DocItem(const QString &path, const QUuid &id, QObject *parent)
    : QObject(parent), m_id(id), m_path(path)
{
}

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
