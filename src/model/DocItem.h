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
#include <optional>

/// The sum of a document's line items beside its subtotal.
struct ItemsTotal {
    double total = 0.0;             ///< sum of the item amounts that parse
    std::optional<double> subtotal; ///< the document's subtotal, when it parses
    bool matches() const;           ///< within one cent of the subtotal (Doubts::withinACent)
};

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
    /// Approving does nothing while approvalBlock() names a reason; withdrawing always works.
    void setApproved(bool approved);
    void setFields(const QList<Field> &fields);
    void setItems(const QList<LineItem> &items);

    // Hand edits from the review form. Each marks what it changed as edited and emits `changed()` once;
    // a key or id that names nothing changes nothing and emits nothing.

    /// Sets the value of the field keyed `key`.
    void editField(const QString &key, const QString &text);
    /// Sets one text column of the line item `id`.
    void editItem(const QUuid &id, LineItem::Column column, const QString &text);
    /// Appends an empty item of quantity 1 (no box, confidence 0); returns its id.
    QUuid addItem();
    void removeItem(const QUuid &id);
    /// The sum of the item amounts that parse, or nothing when none does.
    std::optional<ItemsTotal> itemsTotal() const;

    QList<PagePtr> pages;
    QList<Row> rows;

    /// The value of the first field keyed exactly `key`, or "" when there is none.
    QString value(const QString &key) const;
    /// What an export writes of this document, as it is now; amounts, quantities and dates typed by hand
    /// in the form exports write them (TypedValue::exported), so every format agrees.
    DocRecord record() const;
    /// Why the document cannot be approved now: the first value typed by hand that is not what its box
    /// takes (an amount, a quantity, a date), in a sentence; empty when approval may go ahead.
    QString approvalBlock() const;

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
