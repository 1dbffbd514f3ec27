// The --merge reader on arbitrary jsonl text: it refuses with a message, or gives one result per file
// that writes back to lines which read to the same run.
#include "Jsonl.h"

#include <QFile>
#include <QTemporaryDir>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

QString writeTemporary(const QString &name, const QByteArray &bytes)
{
    static QTemporaryDir dir;
    const QString path = dir.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(bytes) != bytes.size())
        std::abort();
    return path;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Two outputs, split at the first form feed, so lines of one run can disagree across files.
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    const qsizetype cut = input.indexOf('\f');
    QStringList paths{writeTemporary(QStringLiteral("a.jsonl"), cut < 0 ? input : input.left(cut))};
    if (cut >= 0)
        paths.append(writeTemporary(QStringLiteral("b.jsonl"), input.mid(cut + 1)));

    const auto read = Jsonl::read(paths);
    if (const auto *error = std::get_if<TabrixError>(&read)) {
        if (error->message.isEmpty())
            std::abort();
        return 0;
    }
    const Jsonl::Run &run = std::get<Jsonl::Run>(read);
    if (run.files.size() != run.results.size() || run.missing < 0 ||
        (run.missing > 0 && run.firstMissing >= run.files.size() + run.missing))
        std::abort();
    if (run.missing > 0)
        return 0;

    // Written again as one run's lines, the documents read back in the same order with the same outcome.
    QByteArray again;
    for (qsizetype i = 0; i < run.files.size(); ++i)
        again +=
            Jsonl::line(i, run.files.size(), QStringLiteral("list"), run.files[i], run.results[i], {}) + '\n';
    const auto reread = Jsonl::read({writeTemporary(QStringLiteral("again.jsonl"), again)});
    const auto *back = std::get_if<Jsonl::Run>(&reread);
    if (!back || back->files.size() != run.files.size())
        std::abort();
    for (qsizetype i = 0; i < run.files.size(); ++i) {
        if (std::holds_alternative<TabrixError>(back->results[i]) !=
            std::holds_alternative<TabrixError>(run.results[i]))
            std::abort();
    }
    return 0;
}
