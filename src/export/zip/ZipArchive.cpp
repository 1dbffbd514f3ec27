// Zip archives built in memory with libzip, for the Excel export; the tabrix_zip module.
#include "model/CHandle.h"
#include "model/TabrixError.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <utility>
#include <zip.h>

namespace {

using ZipPtr = CHandle<zip_t, zip_discard>;
using SourcePtr = CHandle<zip_source_t, zip_source_free>;

TabrixError zipFailure(zip_error_t *error)
{
    return TabrixError{QStringLiteral("zip failed (%1) %2")
                           .arg(zip_error_code_zip(error))
                           .arg(QString::fromUtf8(zip_error_strerror(error)))};
}

/// A zip archive of `entries` (name, bytes), built in memory. The entries' bytes must stay alive
/// until it returns, since libzip reads them only when the archive is closed.
Expected<QByteArray> zipInMemory(const QList<std::pair<QByteArray, QByteArray>> &entries)
{
    zip_error_t error;
    zip_error_init(&error);
    const SourcePtr buffer(zip_source_buffer_create(nullptr, 0, 0, &error));
    if (!buffer) {
        TabrixError failure = zipFailure(&error);
        zip_error_fini(&error);
        return failure;
    }
    ZipPtr archive(zip_open_from_source(buffer.get(), ZIP_TRUNCATE, &error));
    if (!archive) {
        TabrixError failure = zipFailure(&error);
        zip_error_fini(&error);
        return failure;
    }
    zip_source_keep(buffer.get()); // the archive releases its reference on close; we read it after

    for (const auto &[name, bytes] : entries) {
        zip_source_t *source =
            zip_source_buffer(archive.get(), bytes.constData(), zip_uint64_t(bytes.size()), 0);
        if (!source)
            return zipFailure(zip_get_error(archive.get()));
        if (zip_file_add(archive.get(), name.constData(), source, ZIP_FL_ENC_UTF_8) < 0) {
            zip_source_free(source);
            return zipFailure(zip_get_error(archive.get()));
        }
    }
    if (zip_close(archive.get()) < 0)
        return zipFailure(zip_get_error(archive.get()));
    static_cast<void>(archive.release()); // closed and freed by zip_close: the owner lets go

    zip_stat_t stat;
    if (zip_source_stat(buffer.get(), &stat) < 0 || zip_source_open(buffer.get()) < 0)
        return zipFailure(zip_source_error(buffer.get()));
    QByteArray out(qsizetype(stat.size), Qt::Uninitialized);
    const zip_int64_t read = zip_source_read(buffer.get(), out.data(), stat.size);
    zip_source_close(buffer.get());
    if (read < 0 || zip_uint64_t(read) != stat.size)
        return zipFailure(zip_source_error(buffer.get()));
    return out;
}

} // namespace

/// Fills `archive` with the zip of `entries` (name, bytes) and returns true, or fills `error` with
/// "zip failed (" + libzip's error code + ") " + its description and returns false.
extern "C" Q_DECL_EXPORT bool tabrix_zip(const QList<std::pair<QByteArray, QByteArray>> *entries,
                                         QByteArray *archive, QString *error)
{
    auto zipped = zipInMemory(*entries);
    if (auto *failed = std::get_if<TabrixError>(&zipped)) {
        *error = failed->message;
        return false;
    }
    *archive = std::get<QByteArray>(std::move(zipped));
    return true;
}
