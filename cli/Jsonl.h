#pragma once

#include "intake/Processing.h"
#include "model/CustomFieldDef.h"

#include <QByteArray>
#include <QFile>
#include <QStringList>
#include <optional>

/// The JSON Lines form of a run (--format jsonl), which --merge reads back.
///
/// One object per document on one line: the JSON export's element for a ready document plus "index"
/// (its place in the whole run's queue order), "count" (the files in the whole run, every shard
/// included), "list" (listDigest of the whole run's file list, the same in every shard's lines), and "fields"
/// and "items" (the document's records as --lines writes them, from which every export format can be rebuilt
/// exactly). A failed document has "file", "path", "index", "count", "list" and "error" (the message)
/// instead.
namespace Jsonl {

/// Which run's file list a line belongs to: a digest of all of its paths in queue order (absolute,
/// cleaned), as hex text. Two shards agree on it only when they expanded the very same list.
QString listDigest(const QStringList &paths);

/// The line of the document at `index` of `count` in the list with digest `list`, read from `path` (no
/// newline). Never fails.
QByteArray line(qsizetype index, qsizetype count, const QString &list, const QString &path,
                const Expected<Processing::Loaded> &result, const QList<CustomFieldDef> &defs);

/// What --merge rebuilds from JSON Lines outputs: the whole run's files in queue order and each one's
/// result, as a run over all of them would hold them.
struct Run {
    QStringList files; ///< absolute paths
    QList<Expected<Processing::Loaded>> results;
    QStringList notes;          ///< incomplete last lines that were skipped, one message each
    qsizetype missing = 0;      ///< documents of the run that no output holds (a shard cut short)
    qsizetype firstMissing = 0; ///< the index of the first of them
};

/// Reads the outputs in `paths`, in any order; of several lines for one index the last read wins.
/// Fails with a message naming the file and line for unreadable files, lines that are not ours, and
/// outputs of different file lists (another count, list digest or path at an index). A last line without its
/// newline that does not parse is the trace of a killed run and is skipped; the documents it lost count as
/// missing.
Expected<Run> read(const QStringList &paths);

} // namespace Jsonl

/// Writes lines to a file (truncated when opened) or, when the name is empty, to standard output,
/// flushing each, so a killed run keeps every finished document and a reader can follow along.
class JsonlWriter {
public:
    /// Lines for the run whose file list has digest `list`.
    JsonlWriter(const QString &output, const QString &list);
    JsonlWriter(const JsonlWriter &) = delete;
    JsonlWriter &operator=(const JsonlWriter &) = delete;

    void write(qsizetype index, qsizetype count, const QString &path,
               const Expected<Processing::Loaded> &result, const QList<CustomFieldDef> &defs);

    /// Why opening or a write failed; nothing while all went well.
    std::optional<TabrixError> failure() const { return m_failure; }

    /// The exit status of the run: 1 after a failed write (reported here), 2 when a document failed,
    /// else 0.
    int finish(const QList<Expected<Processing::Loaded>> &results);

private:
    QFile m_file;
    QString m_list;
    std::optional<TabrixError> m_failure;
};
