#include "Arguments.h"

#include "export/ExportFormat.h"

namespace {

TabrixError usage(const QString &message)
{
    return TabrixError{message};
}

/// The options after --rules were taken out (`rest`), read into `call`; a usage error otherwise.
std::optional<TabrixError> parseOptions(const QStringList &rest, Invocation &call)
{
    BatchOptions &options = call.options;
    for (qsizetype i = 0; i < rest.size(); ++i) {
        const QString &arg = rest[i];
        auto value = [&](QString &out) {
            if (i + 1 >= rest.size())
                return false;
            out = rest[++i];
            return true;
        };
        QString v;
        if (arg == QLatin1String("--help") || arg == QLatin1String("-h")) {
            call.mode = Invocation::Mode::help;
            return std::nullopt;
        } else if (arg == QLatin1String("--version")) {
            call.mode = Invocation::Mode::version;
            return std::nullopt;
        } else if (arg == QLatin1String("--lines") || arg == QLatin1String("--dump-lines")) {
            const bool lines = arg == QLatin1String("--lines");
            if (!value(call.input) || i + 1 != rest.size())
                return usage(lines ? QStringLiteral("--lines takes exactly one FILE or -")
                                   : QStringLiteral("--dump-lines takes exactly one PATH"));
            call.mode = lines ? Invocation::Mode::lines : Invocation::Mode::dumpLines;
            return std::nullopt;
        } else if (arg == QLatin1String("--format")) {
            const bool given = value(v);
            const auto format = given ? exportFormatNamed(v) : std::nullopt;
            options.jsonl = given && v == QLatin1String("jsonl");
            if (!format && !options.jsonl)
                return usage(QStringLiteral("--format must be json, csv, tsv, xlsx or jsonl"));
            options.format = format.value_or(options.format);
        } else if (arg == QLatin1String("--layout")) {
            const auto layout = value(v) ? rowLayoutNamed(v) : std::nullopt;
            if (!layout)
                return usage(QStringLiteral("--layout must be document or line-item"));
            options.layout = *layout;
        } else if (arg == QLatin1String("--output")) {
            if (!value(options.output) || options.output.isEmpty())
                return usage(QStringLiteral("--output needs a FILE"));
        } else if (arg == QLatin1String("--custom-fields")) {
            if (!value(options.customFields) || options.customFields.isEmpty())
                return usage(QStringLiteral("--custom-fields needs a FILE"));
        } else if (arg == QLatin1String("--jobs")) {
            bool ok = false;
            options.jobs = value(v) ? v.toInt(&ok) : 0;
            if (!ok || options.jobs < 1)
                return usage(QStringLiteral("--jobs needs a whole number of at least 1"));
        } else if (arg == QLatin1String("--shard")) {
            const auto shard = value(v) ? parseShard(v) : std::nullopt;
            if (!shard)
                return usage(QStringLiteral("--shard needs K/N with whole numbers 1 <= K <= N"));
            options.shard = *shard;
        } else if (arg == QLatin1String("--merge")) {
            options.merge = true;
        } else if (arg == QLatin1String("--quiet")) {
            options.quiet = true;
        } else if (arg == QLatin1String("--")) {
            options.paths += rest.mid(i + 1);
            break;
        } else if (arg.startsWith(QLatin1String("--"))) {
            return usage(QStringLiteral("unknown option ") + arg);
        } else {
            options.paths.append(arg);
        }
    }
    return std::nullopt;
}

} // namespace

Expected<Invocation> parseArguments(const QStringList &args)
{
    Invocation call;
    // --rules may stand anywhere, also after --lines FILE, so it is taken out before the other options.
    QStringList rest;
    for (qsizetype i = 0; i < args.size(); ++i) {
        if (args[i] == QLatin1String("--")) {
            rest += args.mid(i);
            break;
        }
        if (args[i] != QLatin1String("--rules")) {
            rest.append(args[i]);
            continue;
        }
        const auto rules = i + 1 < args.size() ? ruleSetFromName(args[++i]) : std::nullopt;
        if (!rules)
            return usage(QStringLiteral("--rules must be core or full"));
        call.options.rules = *rules;
    }
    if (const auto error = parseOptions(rest, call))
        return *error;
    if (call.mode != Invocation::Mode::batch)
        return call;

    const BatchOptions &options = call.options;
    if (options.paths.isEmpty())
        return usage(options.merge ? QStringLiteral("--merge needs the jsonl FILEs to combine")
                                   : QStringLiteral("no PATH given"));
    if (options.merge && (options.jsonl || options.shard.n > 1))
        return usage(QStringLiteral("--merge writes json, csv, tsv or xlsx and takes no --shard"));
    if (!options.jsonl && options.format == ExportFormat::xlsx && options.output.isEmpty())
        return usage(QStringLiteral("--format xlsx requires --output FILE"));
    if (options.merge)
        call.mode = Invocation::Mode::merge;
    return call;
}

const char *usageText()
{
    return "usage: tabrix-cli [options] PATH...\n"
           "       tabrix-cli --merge [options] FILE...\n"
           "       tabrix-cli --lines FILE|-\n"
           "       tabrix-cli --dump-lines PATH\n"
           "       tabrix-cli --version\n"
           "options:\n"
           "  --format json|csv|tsv|xlsx|jsonl\n"
           "                               export format (default json); jsonl: one line per finished "
           "document\n"
           "  --layout document|line-item  rows of csv/tsv (default document)\n"
           "  --output FILE                write the export to FILE (default standard output)\n"
           "  --custom-fields FILE         custom field definitions (default: the saved ones)\n"
           "  --jobs N                     documents read at once (default: number of cores)\n"
           "  --quiet                      no progress on standard error\n"
           "  --shard K/N                  read only the K-th of N disjoint parts of the files found\n"
           "  --merge                      the FILEs are jsonl outputs: export them as one run would have\n"
           "  --rules core|full            core: the base rules alone; full (default): with the extensions\n"
           "                               (languages, receipts, checks); applies to --lines and "
           "--dump-lines "
           "too\n";
}

QString versionLine()
{
    return QStringLiteral("tabrix-cli " TABRIX_VERSION);
}
