#include "DocItem.h"

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

QString DocItem::value(const QString &key) const
{
    return fieldValue(m_fields, key);
}
