#pragma once

#include "Batch.h"
#include "CustomFieldSettings.h"
#include "StoreUi.h"
#include "export/ExportFormat.h"
#include "export/Table.h"

#include <QHash>
#include <QList>
#include <QString>
#include <QUuid>
#include <functional>
#include <optional>

/// Writes the batch's approved documents, in batch order, to files and the clipboard, and remembers
/// what each file export wrote so that quitting can warn about approvals not yet exported.
///
/// Every action returns the message for the user, empty when there is none: with nothing approved,
/// "Approve at least one document first. Only approved documents are exported."; a failed write,
/// "Export failed: " + the reason. A cancelled dialog is silent, and so is success (except the
/// clipboard copy, which always says what it copied).
class Exports {
public:
    /// Reads documents from `batch` and definitions from `fields`; both must outlive this.
    Exports(const Batch &batch, const CustomFieldSettings &fields) : m_batch(batch), m_fields(fields) {}

    /// Dialogs and clipboard (not owned; null: dialogs cancel).
    void setUi(StoreUi *ui) { m_ui = ui; }

    /// Asks where to save the documents in `format`, proposing the format's file name, and writes them.
    QString exportAs(ExportFormat format, RowLayout layout);
    /// Puts the tab-separated table of `layout` on the clipboard.
    QString copyTSV(RowLayout layout);
    using Write = std::function<std::optional<TabrixError>(const QString &path)>;
    /// Asks for a location (proposing `name`, offering `filter`) and runs `write` on it; a failure is
    /// returned as the message. `written`, when given, tells whether the file was written.
    QString save(const QString &name, const QString &filter, const Write &write, bool *written = nullptr);

    /// Approved documents that no export to a file has written as they are now, in batch order.
    QList<DocPtr> unexportedApproved() const;
    /// Forgets what was exported (the batch was emptied).
    void forget() { m_exported.clear(); }

private:
    QList<DocRecord> approvedRecords() const;
    void markExported();

    const Batch &m_batch;
    const CustomFieldSettings &m_fields;
    StoreUi *m_ui = nullptr;
    /// Per document, its fields and items as the last export to a file wrote them.
    struct Exported {
        QList<Field> fields;
        QList<LineItem> items;
    };
    QHash<QUuid, Exported> m_exported;
};
