#include "BatchFile.h"

#include "model/CHandle.h"
#include <QCryptographicHash>
#include <QDataStream>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "model/CHandle.h"

#include <sqlite3.h>

// ---- Values as blobs --------------------------------------------------------------------------------
// QDataStream at a fixed version: exact doubles, compact, and its format is tied to the schema version.

namespace {

constexpr QDataStream::Version streamVersion = QDataStream::Qt_6_0;

// Qt's own list operators cannot see the record operators below (they live in this file only).
template <class T> struct ListOf {
    QList<T> &list;
};
template <class T> struct ConstListOf {
    const QList<T> &list;
};

// Declared before the list operators, which call them for their elements.
QDataStream &operator<<(QDataStream &out, const TextLine &l);
QDataStream &operator>>(QDataStream &in, TextLine &l);
QDataStream &operator<<(QDataStream &out, const Field &f);
QDataStream &operator>>(QDataStream &in, Field &f);
QDataStream &operator<<(QDataStream &out, const LineItem &i);
QDataStream &operator>>(QDataStream &in, LineItem &i);
QDataStream &operator<<(QDataStream &out, const Row &r);
QDataStream &operator>>(QDataStream &in, Row &r);

template <class T> QDataStream &operator<<(QDataStream &out, ConstListOf<T> values)
{
    out << qint64(values.list.size());
    for (const T &value : values.list)
        out << value;
    return out;
}

template <class T> QDataStream &operator>>(QDataStream &in, ListOf<T> values)
{
    qint64 size = 0;
    in >> size;
    values.list.clear();
    // A damaged count must not reserve memory it does not hold.
    for (qint64 i = 0; i < size && in.status() == QDataStream::Ok; ++i) {
        T value;
        in >> value;
        values.list.append(std::move(value));
    }
    return in;
}

QDataStream &operator<<(QDataStream &out, const std::optional<PageBox> &box)
{
    out << box.has_value();
    if (box)
        out << qint32(box->page) << box->rect;
    return out;
}

QDataStream &operator>>(QDataStream &in, std::optional<PageBox> &box)
{
    bool has = false;
    in >> has;
    box.reset();
    if (has) {
        qint32 page = 0;
        QRectF rect;
        in >> page >> rect;
        box = PageBox{page, rect};
    }
    return in;
}

QDataStream &operator<<(QDataStream &out, const Field &f)
{
    return out << f.key << f.label << f.value << f.confidence << f.edited << f.box << f.isCustom << f.source;
}

QDataStream &operator>>(QDataStream &in, Field &f)
{
    return in >> f.key >> f.label >> f.value >> f.confidence >> f.edited >> f.box >> f.isCustom >> f.source;
}

QDataStream &operator<<(QDataStream &out, const LineItem &i)
{
    return out << i.id << i.description << i.quantity << i.unitPrice << i.amount << i.confidence << i.edited
               << i.box;
}

QDataStream &operator>>(QDataStream &in, LineItem &i)
{
    return in >> i.id >> i.description >> i.quantity >> i.unitPrice >> i.amount >> i.confidence >> i.edited >>
           i.box;
}

QDataStream &operator<<(QDataStream &out, const TextLine &l)
{
    return out << l.text << l.rect << qint32(l.page);
}

QDataStream &operator>>(QDataStream &in, TextLine &l)
{
    qint32 page = 0;
    in >> l.text >> l.rect >> page;
    l.page = page;
    return in;
}

// A row is kept as its lines: Row's constructor rebuilds the joined text and offsets exactly.
QDataStream &operator<<(QDataStream &out, const Row &r)
{
    return out << qint32(r.page) << ConstListOf<TextLine>{r.lines};
}

QDataStream &operator>>(QDataStream &in, Row &r)
{
    qint32 page = 0;
    QList<TextLine> lines;
    in >> page >> ListOf<TextLine>{lines};
    r = Row(page, lines);
    return in;
}

template <class... T> QByteArray encode(const T &...values)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(streamVersion);
    (out << ... << values);
    return bytes;
}

/// Reads `values` from the whole of `bytes`; false when they are cut short or bytes are left over.
template <class... T> bool decode(const QByteArray &bytes, T &&...values)
{
    QDataStream in(bytes);
    in.setVersion(streamVersion);
    (in >> ... >> values);
    return in.status() == QDataStream::Ok && in.atEnd();
}

// ---- Statements -------------------------------------------------------------------------------------

using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

Statement prepare(sqlite3 *db, const char *sql)
{
    sqlite3_stmt *stmt = nullptr;
    sqlite3_prepare_v2(db, sql, -1, &stmt, nullptr);
    return Statement(stmt, &sqlite3_finalize);
}

void bindText(sqlite3_stmt *stmt, int column, const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    sqlite3_bind_text(stmt, column, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT);
}

void bindBlob(sqlite3_stmt *stmt, int column, const QByteArray &bytes)
{
    sqlite3_bind_blob(stmt, column, bytes.constData(), int(bytes.size()), SQLITE_TRANSIENT);
}

QString columnText(sqlite3_stmt *stmt, int column)
{
    return QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(stmt, column)),
                             sqlite3_column_bytes(stmt, column));
}

QByteArray columnBlob(sqlite3_stmt *stmt, int column)
{
    return QByteArray(static_cast<const char *>(sqlite3_column_blob(stmt, column)),
                      sqlite3_column_bytes(stmt, column));
}

/// Steps from one schema version to the next: migrations[v] takes a version-v file to v + 1. A new
/// version appends its step; existing steps never change.
const char *const migrations[] = {
    "CREATE TABLE documents (id TEXT PRIMARY KEY, position INTEGER NOT NULL, path TEXT NOT NULL, "
    "size INTEGER NOT NULL, modified INTEGER NOT NULL, hash BLOB NOT NULL, status INTEGER NOT NULL, "
    "message TEXT NOT NULL, approved INTEGER NOT NULL, fields BLOB NOT NULL, items BLOB NOT NULL, "
    "rows BLOB NOT NULL, exported BLOB)",
};
static_assert(std::size(migrations) == BatchFile::schemaVersion);

using Db = CHandle<sqlite3, sqlite3_close_v2>;

QString lastError(sqlite3 *db)
{
    return QString::fromUtf8(sqlite3_errmsg(db));
}

/// Why `db` cannot be used as a batch, or nothing when it can (brought up to this build's schema).
std::optional<QString> prepareSchema(sqlite3 *db, bool *newer)
{
    *newer = false;
    // A file that is not a database fails on its first read, here.
    if (sqlite3_exec(db, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr) != SQLITE_OK)
        return lastError(db);
    const Statement check = prepare(db, "PRAGMA quick_check");
    if (!check || sqlite3_step(check.get()) != SQLITE_ROW ||
        columnText(check.get(), 0) != QLatin1String("ok"))
        return QStringLiteral("integrity check failed");
    const Statement version = prepare(db, "PRAGMA user_version");
    if (!version || sqlite3_step(version.get()) != SQLITE_ROW)
        return lastError(db);
    const int at = sqlite3_column_int(version.get(), 0);
    if (at > BatchFile::schemaVersion) {
        *newer = true;
        return QStringLiteral("written by a newer Tabrix");
    }
    for (int v = at; v < BatchFile::schemaVersion; ++v) {
        const QByteArray step = QByteArray("BEGIN IMMEDIATE; ") + migrations[v] +
                                "; PRAGMA user_version = " + QByteArray::number(v + 1) + "; COMMIT;";
        if (sqlite3_exec(db, step.constData(), nullptr, nullptr, nullptr) != SQLITE_OK) {
            const QString message = lastError(db);
            sqlite3_exec(db, "ROLLBACK", nullptr, nullptr, nullptr);
            return message;
        }
    }
    // In WAL mode a commit that reached the log survives the program being killed; NORMAL skips the
    // fsync per commit that only a power loss would need.
    sqlite3_exec(db, "PRAGMA synchronous=NORMAL", nullptr, nullptr, nullptr);
    return std::nullopt;
}

/// Renames the batch and its log files aside; returns the new name of the batch.
QString setAside(const QString &path, const QString &why)
{
    const QString stem = path + u'.' + why + u'-' +
                         QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss"));
    QString aside = stem;
    for (int n = 2; QFileInfo::exists(aside); ++n)
        aside = stem + u'-' + QString::number(n);
    QFile::rename(path, aside);
    for (const char *suffix : {"-wal", "-shm"}) {
        QFile::remove(aside + QLatin1String(suffix));
        QFile::rename(path + QLatin1String(suffix), aside + QLatin1String(suffix));
    }
    return aside;
}

} // namespace

FileStamp FileStamp::of(const QString &path)
{
    FileStamp stamp;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return stamp;
    QCryptographicHash hash(QCryptographicHash::Sha256);
    if (!hash.addData(&file))
        return stamp;
    const QFileInfo info(path);
    stamp.size = info.size();
    stamp.modified = info.lastModified().toMSecsSinceEpoch();
    stamp.hash = hash.result();
    return stamp;
}

// ---- The file ---------------------------------------------------------------------------------------

Expected<BatchFile::Opened> BatchFile::open(const QString &path)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    Opened opened;
    for (int attempt = 0; attempt < 2; ++attempt) {
        sqlite3 *raw = nullptr;
        const int status =
            sqlite3_open_v2(QFile::encodeName(path).constData(), &raw,
                            SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE | SQLITE_OPEN_NOMUTEX, nullptr);
        Db db(raw);
        if (status != SQLITE_OK)
            return TabrixError{QStringLiteral("Can't open the batch ") + path + QStringLiteral(": ") +
                               (raw ? lastError(raw) : QStringLiteral("out of memory"))};
        sqlite3_busy_timeout(raw, 2000);
        bool newer = false;
        std::optional<QString> problem = prepareSchema(raw, &newer);
        if (!problem) {
            opened.file.reset(new BatchFile(path, db.release()));
            Expected<QList<StoredDoc>> docs = opened.file->load();
            if (auto *list = std::get_if<QList<StoredDoc>>(&docs)) {
                opened.docs = std::move(*list);
                return opened;
            }
            problem = std::get<TabrixError>(docs).message;
            opened.file.reset();
        }
        if (attempt > 0)
            return TabrixError{QStringLiteral("Can't start a batch at ") + path + QStringLiteral(": ") +
                               *problem};
        db.reset();
        // Never written over: the user (or a newer Tabrix) may still want it.
        const QString aside = setAside(path, newer ? QStringLiteral("newer") : QStringLiteral("damaged"));
        opened.notice = (newer ? QStringLiteral("The batch was saved by a newer version of Tabrix")
                               : QStringLiteral("The batch file was damaged (") + *problem + u')') +
                        QStringLiteral(". It was kept as \u201C") + QFileInfo(aside).fileName() +
                        QStringLiteral("\u201D and a new batch was started.");
    }
    return TabrixError{QStringLiteral("Can't start a batch at ") + path};
}

BatchFile::~BatchFile()
{
    sqlite3_close_v2(m_db);
}

TabrixError BatchFile::error(const QString &what) const
{
    return TabrixError{QStringLiteral("Couldn't ") + what + QStringLiteral(" the batch: ") + lastError(m_db)};
}

std::optional<TabrixError> BatchFile::exec(const char *sql)
{
    if (sqlite3_exec(m_db, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        return error(QStringLiteral("save"));
    return std::nullopt;
}

Expected<QList<StoredDoc>> BatchFile::load() const
{
    const Statement stmt = prepare(m_db, "SELECT id, path, size, modified, hash, status, message, approved, "
                                         "fields, items, rows, exported FROM documents ORDER BY position");
    if (!stmt)
        return error(QStringLiteral("read"));
    QList<StoredDoc> docs;
    int step;
    while ((step = sqlite3_step(stmt.get())) == SQLITE_ROW) {
        sqlite3_stmt *s = stmt.get();
        StoredDoc doc;
        doc.id = QUuid::fromString(columnText(s, 0));
        doc.path = columnText(s, 1);
        doc.stamp.size = sqlite3_column_int64(s, 2);
        doc.stamp.modified = sqlite3_column_int64(s, 3);
        doc.stamp.hash = columnBlob(s, 4);
        const int kind = sqlite3_column_int(s, 5);
        doc.status = kind == DocStatus::Failed  ? DocStatus::failed(columnText(s, 6))
                     : kind == DocStatus::Ready ? DocStatus(DocStatus::Ready)
                                                : DocStatus(DocStatus::Queued);
        doc.approved = sqlite3_column_int(s, 7) != 0;
        bool whole = decode(columnBlob(s, 8), ListOf<Field>{doc.fields}) &&
                     decode(columnBlob(s, 9), ListOf<LineItem>{doc.items}) &&
                     decode(columnBlob(s, 10), ListOf<Row>{doc.rows});
        if (sqlite3_column_type(s, 11) != SQLITE_NULL) {
            doc.exported.emplace();
            whole = whole && decode(columnBlob(s, 11), ListOf<Field>{doc.exported->first},
                                    ListOf<LineItem>{doc.exported->second});
        }
        if (doc.id.isNull() || !whole)
            return TabrixError{QStringLiteral("a document could not be read")};
        docs.append(std::move(doc));
    }
    if (step != SQLITE_DONE)
        return error(QStringLiteral("read"));
    return docs;
}

std::optional<TabrixError> BatchFile::write(const StoredDoc &doc, qsizetype position)
{
    const Statement stmt = prepare(
        m_db, "INSERT INTO documents (id, position, path, size, modified, hash, status, message, approved, "
              "fields, items, rows, exported) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?) "
              "ON CONFLICT(id) DO UPDATE SET position = excluded.position, path = excluded.path, "
              "size = excluded.size, modified = excluded.modified, hash = excluded.hash, "
              "status = excluded.status, message = excluded.message, approved = excluded.approved, "
              "fields = excluded.fields, items = excluded.items, rows = excluded.rows, "
              "exported = COALESCE(excluded.exported, documents.exported)");
    if (!stmt)
        return error(QStringLiteral("save"));
    sqlite3_stmt *s = stmt.get();
    bindText(s, 1, doc.id.toString(QUuid::WithoutBraces));
    sqlite3_bind_int64(s, 2, position);
    bindText(s, 3, doc.path);
    sqlite3_bind_int64(s, 4, doc.stamp.size);
    sqlite3_bind_int64(s, 5, doc.stamp.modified);
    bindBlob(s, 6, doc.stamp.hash);
    // A run cut short starts again next time.
    const DocStatus::Kind kind = doc.status.kind();
    sqlite3_bind_int(s, 7, kind == DocStatus::Ready || kind == DocStatus::Failed ? kind : DocStatus::Queued);
    bindText(s, 8, doc.status.message());
    sqlite3_bind_int(s, 9, doc.approved);
    bindBlob(s, 10, encode(ConstListOf<Field>{doc.fields}));
    bindBlob(s, 11, encode(ConstListOf<LineItem>{doc.items}));
    bindBlob(s, 12, encode(ConstListOf<Row>{doc.rows}));
    if (doc.exported)
        bindBlob(
            s, 13,
            encode(ConstListOf<Field>{doc.exported->first}, ConstListOf<LineItem>{doc.exported->second}));
    if (sqlite3_step(s) != SQLITE_DONE)
        return error(QStringLiteral("save"));
    return std::nullopt;
}

std::optional<TabrixError> BatchFile::transaction(const std::function<std::optional<TabrixError>()> &body)
{
    if (auto failed = exec("BEGIN IMMEDIATE"))
        return failed;
    if (auto failed = body()) {
        exec("ROLLBACK");
        return failed;
    }
    return exec("COMMIT");
}

std::optional<TabrixError> BatchFile::run(const char *sql, const QVariantList &params)
{
    const Statement stmt = prepare(m_db, sql);
    if (!stmt)
        return error(QStringLiteral("save"));
    for (int i = 0; i < params.size(); ++i) {
        if (params[i].typeId() == QMetaType::LongLong || params[i].typeId() == QMetaType::Int)
            sqlite3_bind_int64(stmt.get(), i + 1, params[i].toLongLong());
        else
            bindText(stmt.get(), i + 1, params[i].toString());
    }
    if (sqlite3_step(stmt.get()) != SQLITE_DONE)
        return error(QStringLiteral("save"));
    return std::nullopt;
}

std::optional<TabrixError> BatchFile::save(const StoredDoc &doc, qsizetype position)
{
    return transaction([&] { return write(doc, position); });
}

std::optional<TabrixError> BatchFile::insert(const QList<StoredDoc> &docs, qsizetype first)
{
    return transaction([&]() -> std::optional<TabrixError> {
        if (auto failed = run("UPDATE documents SET position = position + ? WHERE position >= ?",
                              {qint64(docs.size()), qint64(first)}))
            return failed;
        for (qsizetype i = 0; i < docs.size(); ++i) {
            if (auto failed = write(docs[i], first + i))
                return failed;
        }
        return std::nullopt;
    });
}

std::optional<TabrixError> BatchFile::saveExported(const QUuid &id, const QList<Field> &fields,
                                                   const QList<LineItem> &items)
{
    const Statement stmt = prepare(m_db, "UPDATE documents SET exported = ? WHERE id = ?");
    if (!stmt)
        return error(QStringLiteral("save"));
    bindBlob(stmt.get(), 1, encode(ConstListOf<Field>{fields}, ConstListOf<LineItem>{items}));
    bindText(stmt.get(), 2, id.toString(QUuid::WithoutBraces));
    if (sqlite3_step(stmt.get()) != SQLITE_DONE)
        return error(QStringLiteral("save"));
    return std::nullopt;
}

std::optional<TabrixError> BatchFile::remove(const QUuid &id)
{
    const QString key = id.toString(QUuid::WithoutBraces);
    return transaction([&]() -> std::optional<TabrixError> {
        if (auto failed = run("UPDATE documents SET position = position - 1 "
                              "WHERE position > (SELECT position FROM documents WHERE id = ?)",
                              {key}))
            return failed;
        return run("DELETE FROM documents WHERE id = ?", {key});
    });
}

std::optional<TabrixError> BatchFile::clear()
{
    return exec("DELETE FROM documents");
}
