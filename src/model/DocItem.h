#pragma once

#include "DocRecord.h"
#include "DocStatus.h"
#include "Field.h"
#include "LineItem.h"
#include "PageData.h"
#include "Row.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>
#include <QUuid>

/// One document of the batch. Lives on the main thread; every published setter emits `changed()`
/// so views can redraw. `pages` and `rows` are plain: they are always set together with a published
/// property, which carries the notification.
class DocItem : public QObject {
    Q_OBJECT
public:
    explicit DocItem(const QString &path, QObject *parent = nullptr);

    const QUuid &id() const { return m_id; }
    /// Absolute path of the file the document was read from.
    const QString &path() const { return m_path; }
    QString fileName() const;

    const DocStatus &status() const { return m_status; }
    double progress() const { return m_progress; }
    bool approved() const { return m_approved; }
    const QList<Field> &fields() const { return m_fields; }
    const QList<LineItem> &items() const { return m_items; }

    void setStatus(const DocStatus &status);
    void setProgress(double progress);
    void setApproved(bool approved);
    void setFields(const QList<Field> &fields);
    void setItems(const QList<LineItem> &items);

    QList<PagePtr> pages;
    QList<Row> rows;

    /// The value of the first field keyed exactly `key`, or "" when there is none.
    QString value(const QString &key) const;
    /// What an export writes of this document, as it is now.
    DocRecord record() const { return {m_path, m_fields, m_items}; }

signals:
    void changed();

private:
    QUuid m_id = QUuid::createUuid();
    QString m_path;
    DocStatus m_status;
    double m_progress = 0.0;
    bool m_approved = false;
    QList<Field> m_fields;
    QList<LineItem> m_items;
};
