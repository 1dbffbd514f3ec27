#pragma once

#include "model/DocStatus.h"
#include "model/Field.h"
#include "model/LineItem.h"
#include "model/Row.h"
#include "model/TabrixError.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUuid>
#include <QVariantList>
#include <functional>
#include <memory>
#include <optional>

struct sqlite3;

/// What a file was when it was read: a later difference means it moved or changed since.
struct FileStamp {
    qint64 size = -1;    ///< bytes; -1 when the file could not be read
    qint64 modified = 0; ///< modification time, ms since the epoch (UTC)
    QByteArray hash;     ///< SHA-256 of the contents
    bool operator==(const FileStamp &) const = default;

    /// Stats and hashes `path` (reads it whole); size -1 when it cannot be read.
    static FileStamp of(const QString &path);
};

/// A document as the batch file keeps it.
struct StoredDoc {
    QUuid id;
    QString path;
    FileStamp stamp;
    /// Ready, Failed (with its message) or Queued; a run in progress is kept as Queued.
    DocStatus status;
    bool approved = false;
    QList<Field> fields; ///< as extracted, with the user's corrections marked edited
    QList<LineItem> items;
    QList<Row> rows; ///< the text the fields were found in (custom fields are re-synced from it)
    /// The fields and items as the last export to a file wrote them; none when never exported.
    std::optional<std::pair<QList<Field>, QList<LineItem>>> exported;
    bool operator==(const StoredDoc &) const = default;
};

/// A batch kept in an SQLite file as it changes: one row per document, written in one transaction per
/// change, in write-ahead-log mode so that a killed program loses at most the change it was writing.
///
/// The schema carries a version (PRAGMA user_version) and is brought up to date on open. A file
/// written by a newer Tabrix, or one that is not a readable batch, is never written over: it is
/// renamed aside and a fresh batch starts in its place. Not thread-safe; one owner thread.
class BatchFile {
public:
    /// The schema version this build writes.
    static constexpr int schemaVersion = 1;

    struct Opened;
    /// Opens the batch at `path`, creating it (and its folder) when missing, and reads its documents.
    /// Fails only when no database can be created there at all.
    static Expected<Opened> open(const QString &path);
    ~BatchFile();
    BatchFile(const BatchFile &) = delete;
    BatchFile &operator=(const BatchFile &) = delete;

    const QString &path() const { return m_path; }

    /// Writes a document at `position` in the batch order (replacing the one with its id; export marks
    /// it does not carry are kept).
    std::optional<TabrixError> save(const StoredDoc &doc, qsizetype position);
    /// Inserts documents at `first` in the batch order, in one transaction; later ones move down.
    std::optional<TabrixError> insert(const QList<StoredDoc> &docs, qsizetype first);
    /// Records a document's fields and items as an export wrote them.
    std::optional<TabrixError> saveExported(const QUuid &id, const QList<Field> &fields,
                                            const QList<LineItem> &items);
    /// Takes a document out; later ones move up.
    std::optional<TabrixError> remove(const QUuid &id);
    /// Empties the batch.
    std::optional<TabrixError> clear();

private:
    Expected<QList<StoredDoc>> load() const;
    BatchFile(QString path, sqlite3 *db) : m_path(std::move(path)), m_db(db) {}
    std::optional<TabrixError> exec(const char *sql);
    /// Runs `sql` with `params` bound in order (whole numbers as integers, anything else as text).
    std::optional<TabrixError> run(const char *sql, const QVariantList &params);
    /// Runs `body` in one transaction, rolled back when it fails.
    std::optional<TabrixError> transaction(const std::function<std::optional<TabrixError>()> &body);
    std::optional<TabrixError> write(const StoredDoc &doc, qsizetype position);
    TabrixError error(const QString &what) const;

    QString m_path;
    sqlite3 *m_db = nullptr;
};

/// What BatchFile::open found.
struct BatchFile::Opened {
    std::unique_ptr<BatchFile> file;
    QList<StoredDoc> docs; ///< in batch order
    /// For the user when a file was set aside ("…was damaged…"); else empty.
    QString notice;
};
