#include "Jsonl.h"
#include "LinesJson.h"
#include "StandardError.h"

#include "export/JsonExport.h"
#include "intake/NativeNames.h"
#include "intake/SupportedFiles.h"
#include "model/JsonText.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMap>
#include <cmath>
#include <cstdio>

namespace Jsonl {

namespace {

/// A whole number 0 ≤ n < 2^53 (exact as a double), or -1.
qsizetype count(const QJsonValue &value)
{
    const double x = value.toDouble(-1);
    return value.isDouble() && x >= 0 && x < 9007199254740992.0 && x == std::floor(x) ? qsizetype(x) : -1;
}

struct Record {
    qsizetype index;
    qsizetype count;
    QString list;
    QString path;
    Expected<Processing::Loaded> result;
};

std::optional<Record> record(const QJsonDocument &doc)
{
    const QJsonObject o = doc.object();
    const qsizetype index = count(o.value(QLatin1String("index")));
    const qsizetype total = count(o.value(QLatin1String("count")));
    const QString list = o.value(QLatin1String("list")).toString();
    const QString path = o.value(QLatin1String("path")).toString();
    if (!doc.isObject() || index < 0 || total <= index || path.isEmpty())
        return std::nullopt;
    if (const QJsonValue error = o.value(QLatin1String("error")); error.isString())
        return Record{index, total, list, path, TabrixError{error.toString()}};
    const auto fields = o.value(QLatin1String("fields")).isArray()
                            ? LinesJson::parseFields(o.value(QLatin1String("fields")).toArray())
                            : std::nullopt;
    const auto items = o.value(QLatin1String("items")).isArray()
                           ? LinesJson::parseItems(o.value(QLatin1String("items")).toArray())
                           : std::nullopt;
    if (!fields || !items)
        return std::nullopt;
    Processing::Loaded loaded;
    loaded.extraction.fields = *fields;
    loaded.extraction.items = *items;
    return Record{index, total, list, path, loaded};
}

} // namespace

QString listDigest(const QStringList &paths)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (const QString &path : paths) {
        hash.addData(Pipeline::nativeName(Pipeline::standardPath(path)));
        hash.addData(QByteArrayView("\0", 1));
    }
    return QString::fromLatin1(hash.result().left(16).toHex());
}

QByteArray line(qsizetype index, qsizetype count, const QString &list, const QString &path,
                const Expected<Processing::Loaded> &result, const QList<CustomFieldDef> &defs)
{
    const QFileInfo info(path);
    QJsonObject object;
    if (const auto *error = std::get_if<TabrixError>(&result)) {
        object = QJsonObject{{QStringLiteral("file"), info.fileName()},
                             {QStringLiteral("path"), info.absoluteFilePath()},
                             {QStringLiteral("error"), error->message}};
    } else {
        const auto &extraction = std::get<Processing::Loaded>(result).extraction;
        object = Exporter::jsonElement({info.absoluteFilePath(), extraction.fields, extraction.items}, defs);
        object.insert(QStringLiteral("fields"), LinesJson::fieldsJson(extraction.fields));
        object.insert(QStringLiteral("items"), LinesJson::itemsJson(extraction.items));
    }
    object.insert(QStringLiteral("index"), qint64(index));
    object.insert(QStringLiteral("count"), qint64(count));
    object.insert(QStringLiteral("list"), list);
    return JsonText::writeLine(object);
}

Expected<Run> read(const QStringList &paths)
{
    QMap<qsizetype, Record> byIndex;
    qsizetype total = -1;
    QString list;
    Run run;
    for (const QString &name : paths) {
        QFile file(name);
        if (!file.open(QIODevice::ReadOnly))
            return TabrixError{
                QStringLiteral("cannot read %1: %2").arg(Pipeline::displayName(name), file.errorString())};
        // Line by line, so memory holds the records rather than whole outputs.
        for (qsizetype n = 1; !file.atEnd(); ++n) {
            const QByteArray line = file.readLine();
            if (line.trimmed().isEmpty())
                continue;
            const QString where = QStringLiteral("%1:%2: ").arg(Pipeline::displayName(name)).arg(n);
            QJsonParseError error{};
            const QJsonDocument doc = QJsonDocument::fromJson(line, &error);
            if (error.error != QJsonParseError::NoError && !line.endsWith('\n')) {
                run.notes.append(where + QStringLiteral("skipped an incomplete last line"));
                continue;
            }
            auto r = record(doc);
            if (!r)
                return TabrixError{where + QStringLiteral("not a line of tabrix-cli --format jsonl")};
            const auto same = byIndex.constFind(r->index);
            if ((total >= 0 && (r->count != total || r->list != list)) ||
                (same != byIndex.cend() && same->path != r->path))
                return TabrixError{where +
                                   QStringLiteral("written for another list of files than the lines "
                                                  "before it; merge the outputs of one set of shards")};
            total = r->count;
            list = r->list;
            byIndex.insert(r->index, *r);
        }
    }
    if (total < 0)
        return TabrixError{QStringLiteral("the outputs hold no documents")};
    run.missing = total - byIndex.size();
    while (run.missing > 0 && byIndex.contains(run.firstMissing))
        ++run.firstMissing;
    for (Record &r : byIndex) {
        run.files.append(r.path);
        run.results.append(std::move(r.result));
    }
    return run;
}

} // namespace Jsonl

JsonlWriter::JsonlWriter(const QString &output, const QString &list) : m_list(list)
{
    const bool opened =
        output.isEmpty()
            ? m_file.open(stdout, QIODevice::WriteOnly, QFileDevice::DontCloseHandle)
            : (m_file.setFileName(output), m_file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    if (!opened)
        m_failure = TabrixError{m_file.errorString()};
}

void JsonlWriter::write(qsizetype index, qsizetype count, const QString &path,
                        const Expected<Processing::Loaded> &result, const QList<CustomFieldDef> &defs)
{
    if (m_failure)
        return;
    const QByteArray text = Jsonl::line(index, count, m_list, path, result, defs) + '\n';
    if (m_file.write(text) != text.size() || !m_file.flush())
        m_failure = TabrixError{m_file.errorString()};
}

int JsonlWriter::finish(const QList<Expected<Processing::Loaded>> &results)
{
    if (m_failure) {
        printError(QStringLiteral("tabrix-cli: Export failed: ") + m_failure->message);
        return 1;
    }
    const bool anyFailed = std::any_of(results.begin(), results.end(), [](const auto &result) {
        return std::holds_alternative<TabrixError>(result);
    });
    return anyFailed ? 2 : 0;
}
