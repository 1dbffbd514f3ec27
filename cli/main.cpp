// tabrix-cli: the extraction pipeline without a window, for batches and scripts.
#include "Commands.h"
#include "export/ExportFormat.h"
#include "intake/DecoderWarnings.h"
#include "intake/NativeNames.h"

#include <QCoreApplication>

namespace {

const char *const usage =
    "usage: tabrix-cli [options] PATH...\n"
    "       tabrix-cli --merge [options] FILE...\n"
    "       tabrix-cli --lines FILE|-\n"
    "       tabrix-cli --dump-lines PATH\n"
    "options:\n"
    "  --format json|csv|tsv|xlsx|jsonl\n"
    "                               export format (default json); jsonl: one line per finished document\n"
    "  --layout document|line-item  rows of csv/tsv (default document)\n"
    "  --output FILE                write the export to FILE (default standard output)\n"
    "  --custom-fields FILE         custom field definitions (default: the saved ones)\n"
    "  --jobs N                     documents read at once (default: number of cores)\n"
    "  --quiet                      no progress on standard error\n"
    "  --shard K/N                  read only the K-th of N disjoint parts of the files found\n"
    "  --merge                      the FILEs are jsonl outputs: export them as one run would have\n"
    "  --rules core|full            core: the base rules alone; full (default): with the extensions\n"
    "                               (languages, receipts, checks); applies to --lines and --dump-lines too\n";

int usageError(const QString &message)
{
    printError(QStringLiteral("tabrix-cli: ") + message);
    std::fputs(usage, stderr);
    return 1;
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    Pipeline::quietDecoderWarnings();
    // From the bytes, not app.arguments(): a file name that is not UTF-8 must still name its file.
    QStringList allArgs;
    for (int i = 1; i < argc; ++i)
        allArgs.append(Pipeline::decodeNativeName(QByteArray(argv[i])));

    BatchOptions options;
    // --rules may stand anywhere, also after --lines FILE, so it is taken out before the other options.
    QStringList args;
    for (qsizetype i = 0; i < allArgs.size(); ++i) {
        if (allArgs[i] == QLatin1String("--")) {
            args += allArgs.mid(i);
            break;
        }
        if (allArgs[i] != QLatin1String("--rules")) {
            args.append(allArgs[i]);
            continue;
        }
        const auto rules = i + 1 < allArgs.size() ? ruleSetFromName(allArgs[++i]) : std::nullopt;
        if (!rules)
            return usageError(QStringLiteral("--rules must be core or full"));
        options.rules = *rules;
    }
    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString &arg = args[i];
        auto value = [&](QString &out) {
            if (i + 1 >= args.size())
                return false;
            out = args[++i];
            return true;
        };
        QString v;
        if (arg == QLatin1String("--help") || arg == QLatin1String("-h")) {
            std::fputs(usage, stdout);
            return 0;
        } else if (arg == QLatin1String("--lines")) {
            if (!value(v) || i + 1 != args.size())
                return usageError(QStringLiteral("--lines takes exactly one FILE or -"));
            return runLines(v, options.rules);
        } else if (arg == QLatin1String("--dump-lines")) {
            if (!value(v) || i + 1 != args.size())
                return usageError(QStringLiteral("--dump-lines takes exactly one PATH"));
            return runDumpLines(v, options.rules);
        } else if (arg == QLatin1String("--format")) {
            const bool given = value(v);
            const auto format = given ? exportFormatNamed(v) : std::nullopt;
            options.jsonl = given && v == QLatin1String("jsonl");
            if (!format && !options.jsonl)
                return usageError(QStringLiteral("--format must be json, csv, tsv, xlsx or jsonl"));
            options.format = format.value_or(options.format);
        } else if (arg == QLatin1String("--layout")) {
            const auto layout = value(v) ? rowLayoutNamed(v) : std::nullopt;
            if (!layout)
                return usageError(QStringLiteral("--layout must be document or line-item"));
            options.layout = *layout;
        } else if (arg == QLatin1String("--output")) {
            if (!value(options.output) || options.output.isEmpty())
                return usageError(QStringLiteral("--output needs a FILE"));
        } else if (arg == QLatin1String("--custom-fields")) {
            if (!value(options.customFields) || options.customFields.isEmpty())
                return usageError(QStringLiteral("--custom-fields needs a FILE"));
        } else if (arg == QLatin1String("--jobs")) {
            bool ok = false;
            options.jobs = value(v) ? v.toInt(&ok) : 0;
            if (!ok || options.jobs < 1)
                return usageError(QStringLiteral("--jobs needs a whole number of at least 1"));
        } else if (arg == QLatin1String("--shard")) {
            const auto shard = value(v) ? parseShard(v) : std::nullopt;
            if (!shard)
                return usageError(QStringLiteral("--shard needs K/N with whole numbers 1 <= K <= N"));
            options.shard = *shard;
        } else if (arg == QLatin1String("--merge")) {
            options.merge = true;
        } else if (arg == QLatin1String("--quiet")) {
            options.quiet = true;
        } else if (arg == QLatin1String("--")) {
            options.paths += args.mid(i + 1);
            break;
        } else if (arg.startsWith(QLatin1String("--"))) {
            return usageError(QStringLiteral("unknown option ") + arg);
        } else {
            options.paths.append(arg);
        }
    }
    if (options.paths.isEmpty())
        return usageError(options.merge ? QStringLiteral("--merge needs the jsonl FILEs to combine")
                                        : QStringLiteral("no PATH given"));
    if (options.merge && (options.jsonl || options.shard.n > 1))
        return usageError(QStringLiteral("--merge writes json, csv, tsv or xlsx and takes no --shard"));
    if (!options.jsonl && options.format == ExportFormat::xlsx && options.output.isEmpty())
        return usageError(QStringLiteral("--format xlsx requires --output FILE"));
    return runBatch(options);
}
