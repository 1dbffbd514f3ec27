#pragma once

#include "store/Store.h"

#include <QWidget>

class ConfidenceBadge;
class FocusHighlight;
class LineItemGrid;
class QGridLayout;
class QLabel;
class QLineEdit;
class ValueEdit;

/// The right half of the review screen: every field of the document with its confidence badge, then
/// the line items. Each edit goes straight into the document and marks the field or item edited; the
/// focused entry becomes the store's highlight key. Under a flagged value its reasons are written out;
/// amounts and dates are checked as they are typed and put in their exported form when the box is left.
class FormPane : public QWidget {
    Q_OBJECT
public:
    FormPane(Store &store, const DocPtr &doc, QWidget *parent = nullptr);

    QLineEdit *fieldEdit(const QString &key) const;
    ConfidenceBadge *badge(const QString &key) const;
    /// The line under field `key` that says why it is flagged or how a typed value will be exported;
    /// hidden when there is nothing to say.
    QLabel *note(const QString &key) const;
    LineItemGrid *lineItems() const { return m_lineItems; }
    /// Says why the document's file needs a look (Store::fileNotice); hidden when it does not.
    QLabel *fileNotice() const { return m_fileNotice; }

private:
    struct FieldRow {
        QString key;
        QLabel *label;
        ValueEdit *edit;
        ConfidenceBadge *badge;
        QLabel *note;
    };

    void refresh();
    void showDuplicate();
    void showFileNotice();
    void rebuildFields();
    /// Puts a valid amount or date typed into field `key` in the form exports write.
    void commitTyped(const QString &key);

    Store &m_store;
    DocPtr m_doc;
    FocusHighlight *m_focus;

    QWidget *m_duplicate;
    QLabel *m_fileNotice; // why the document's file needs a look: it moved or changed since it was read
    QGridLayout *m_fieldsGrid;
    QList<FieldRow> m_fieldRows;
    LineItemGrid *m_lineItems;
};
