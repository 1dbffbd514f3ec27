// tabrix-cli PATH...: read every document, treat each ready one as approved, write one export.
#include "BatchNotices.h"
#include "Commands.h"
#include "Jsonl.h"
#include "OutputCheck.h"
#include "StandardOutput.h"

#include "export/ExportFormat.h"
#include "export/SaveFile.h"
#include "intake/NativeNames.h"
#include "intake/Processing.h"
#include "intake/SupportedFiles.h"
#include "model/CustomFieldCodec.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QThread>
#include <QThreadPool>
#include <cstdio>
#include <functional>
#include <sys/stat.h>
#include <unistd.h>

namespace {

/// The definitions given with --custom-fields, or else the user's saved ones (never written here).
Expected<QList<CustomFieldDef>> customFields(const QString &given)
{
    if (given.isEmpty()) {
        // A missing or damaged saved file means no definitions, as in the app.
        const auto saved =
            CustomFieldCodec::readFile(CustomFieldCodec::fileIn(CustomFieldCodec::defaultFolder()));
        return std::holds_alternative<TabrixError>(saved) ? QList<CustomFieldDef>{} : saved;
    }
    return CustomFieldCodec::readFile(given);
}

QString notSupported()
{
    return QStringLiteral("not a supported file");
}

/// The locations of `paths` as the app expands them; a file named here that Tabrix does not read (a
/// device such as /dev/zero, a text file) is also kept, as a failure of its own.
QList<Pipeline::Found> expandNamed(const QStringList &paths)
{
    QList<Pipeline::Found> found;
    for (const QString &path : paths) {
        struct stat info {};
        if (::stat(Pipeline::nativeName(path).constData(), &info) == 0 && !S_ISDIR(info.st_mode) &&
            !Pipeline::isSupported(path))
            found.append({path, notSupported()});
        else
            found += Pipeline::expandReporting({path});
    }
    return found;
}

/// Progress on standard error: a live bar on a terminal, one line per finished document otherwise.
class Progress {
public:
    Progress(qsizetype total, bool quiet, const QList<CustomFieldDef> &defs)
        : m_total(total), m_quiet(quiet), m_live(isatty(fileno(stderr))), m_notices(defs, quiet)
    {
    }

    void finished(const QString &path, const Expected<Processing::Loaded> &result)
    {
        ++m_done;
        if (const auto *error = std::get_if<TabrixError>(&result)) {
            clearBar();
            printError(Pipeline::displayName(path) + QStringLiteral(": Failed: ") + error->message);
        } else {
            clearBar();
            m_notices.read(path, std::get<Processing::Loaded>(result));
            if (!m_quiet && !m_live)
                printError(QStringLiteral("[%1/%2] %3: Ready for review")
                               .arg(m_done)
                               .arg(m_total)
                               .arg(Pipeline::displayName(path)));
        }
        if (!m_quiet && m_live)
            drawBar(path);
    }

    void done() { clearBar(); }

private:
    void drawBar(const QString &path)
    {
        constexpr int width = 30;
        const int filled = int(width * m_done / std::max<qsizetype>(m_total, 1));
        std::fprintf(stderr, "\r[%s%s] %lld/%lld %s\033[K", QByteArray(filled, '#').constData(),
                     QByteArray(width - filled, ' ').constData(), static_cast<long long>(m_done),
                     static_cast<long long>(m_total),
                     Pipeline::displayName(QFileInfo(path).fileName()).toUtf8().constData());
        std::fflush(stderr);
        m_barShown = true;
    }

    void clearBar()
    {
        if (m_barShown)
            std::fputs("\r\033[K", stderr);
        m_barShown = false;
    }

    qsizetype m_total;
    qsizetype m_done = 0;
    bool m_quiet;
    bool m_live;
    bool m_barShown = false;
    BatchNotices m_notices;
};

/// Reads every file, `jobs` at once, and returns the results in queue order. Each task writes only its
/// own slot; completions come back to this thread through queued calls, and to `onFinished` as they come.
QList<Expected<Processing::Loaded>>
readAll(const QList<Pipeline::Found> &files, const QList<CustomFieldDef> &defs, int jobs, RuleSet rules,
        Progress &progress,
        const std::function<void(qsizetype, const Expected<Processing::Loaded> &)> &onFinished)
{
    QList<Expected<Processing::Loaded>> results(files.size(), TabrixError{});
    if (files.isEmpty())
        return results;
    Pipeline::LoadOptions options;
    options.renderImages = false;
    options.threads = 1; // documents are already read in parallel
    options.rules = rules;
    const Processing::Loader loader = Processing::pipelineLoader(options);

    QThreadPool pool;
    pool.setMaxThreadCount(jobs);
    pool.setExpiryTimeout(-1); // keep workers, and their recognition engines, for the whole batch
    QEventLoop loop;
    QObject receiver;
    qsizetype finished = 0;
    for (qsizetype i = 0; i < files.size(); ++i) {
        pool.start([&, i] {
            auto result = files[i].error.isEmpty()
                              ? Processing::run(files[i].path, defs, {}, loader, rules)
                              : Expected<Processing::Loaded>(TabrixError{files[i].error});
            if (auto *loaded = std::get_if<Processing::Loaded>(&result))
                loaded->pages.clear(); // nothing here looks at pages; keep memory flat
            QMetaObject::invokeMethod(
                &receiver,
                [&, i, result = std::move(result)]() mutable {
                    results[i] = std::move(result);
                    progress.finished(files[i].path, results[i]);
                    onFinished(i, results[i]);
                    if (++finished == files.size())
                        loop.quit();
                },
                Qt::QueuedConnection);
        });
    }
    loop.exec();
    pool.waitForDone();
    progress.done();
    return results;
}

} // namespace

int runBatch(const BatchOptions &options)
{
    const auto read = customFields(options.customFields);
    if (const auto *error = std::get_if<TabrixError>(&read)) {
        printError(error->message);
        return 1;
    }
    const auto *defs = &std::get<QList<CustomFieldDef>>(read);
    if (options.merge)
        return runMerge(options, *defs);
    // Each file once, by its standard path, in queue order; unreadable locations stay as failures.
    QSet<QString> known;
    const QList<Pipeline::Found> expanded = Pipeline::withoutRepeats(expandNamed(options.paths), known);
    if (std::all_of(expanded.cbegin(), expanded.cend(),
                    [](const Pipeline::Found &found) { return found.error == notSupported(); })) {
        printError(Pipeline::noSupportedFilesMessage());
        return 1;
    }
    const QList<qsizetype> indices = shardIndices(expanded.size(), options.shard);
    QList<Pipeline::Found> files;
    QStringList paths;
    for (const qsizetype i : indices) {
        files.append(expanded[i]);
        paths.append(expanded[i].path);
    }
    QStringList everyInput;
    for (const Pipeline::Found &found : expanded)
        everyInput.append(found.path);
    if (const auto refusal = outputIsAnInput(options.output, everyInput)) {
        printError(*refusal);
        return 1;
    }
    std::optional<JsonlWriter> jsonl;
    if (options.jsonl) {
        jsonl.emplace(options.output, Jsonl::listDigest(everyInput));
        if (const auto error = jsonl->failure()) {
            printError(QStringLiteral("tabrix-cli: Export failed: ") + error->message);
            return 1;
        }
    }

    const int jobs = options.jobs > 0 ? options.jobs : std::max(1, QThread::idealThreadCount());
    Progress progress(files.size(), options.quiet, *defs);
    const auto results = readAll(files, *defs, jobs, options.rules, progress,
                                 [&](qsizetype i, const Expected<Processing::Loaded> &result) {
                                     if (jsonl)
                                         jsonl->write(indices[i], expanded.size(), paths[i], result, *defs);
                                 });
    if (jsonl)
        return jsonl->finish(results);
    return exportResults(options, paths, results, *defs);
}

int exportResults(const BatchOptions &options, const QStringList &files,
                  const QList<Expected<Processing::Loaded>> &results, const QList<CustomFieldDef> &defs)
{
    QList<DocRecord> ready;
    bool anyFailed = false;
    for (qsizetype i = 0; i < files.size(); ++i) {
        if (const auto *loaded = std::get_if<Processing::Loaded>(&results[i]))
            ready.append({QFileInfo(files[i]).absoluteFilePath(), loaded->extraction.fields,
                          loaded->extraction.items});
        else
            anyFailed = true;
    }

    QStringList notes;
    const auto exported = Exporter::exportBytes(options.format, options.layout, ready, defs, &notes);
    for (const QString &note : std::as_const(notes))
        printError(QStringLiteral("tabrix-cli: ") + note);
    if (const auto *error = std::get_if<TabrixError>(&exported)) {
        printError(QStringLiteral("tabrix-cli: ") + error->message);
        return 1;
    }
    const QByteArray &bytes = std::get<QByteArray>(exported);
    if (options.output.isEmpty()) {
        if (const auto failure =
                writeStandardOutput(options.format == ExportFormat::json ? bytes + '\n' : bytes)) {
            printError(QStringLiteral("tabrix-cli: Export failed: ") + failure->message);
            return 1;
        }
    } else if (const auto failure = Exporter::saveFile(options.output, bytes)) {
        printError(QStringLiteral("tabrix-cli: Export failed: ") + failure->message);
        return 1;
    }
    return anyFailed ? 2 : 0;
}
