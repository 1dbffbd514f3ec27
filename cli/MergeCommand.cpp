// tabrix-cli --merge FILE...: the export one run over all files would have written, from the JSON Lines
// outputs of its shards.
#include "Commands.h"
#include "Jsonl.h"
#include "OutputCheck.h"

#include "intake/NativeNames.h"

namespace {

/// The custom field keys a document was read with, in order.
QStringList customKeys(const QList<Field> &fields)
{
    QStringList keys;
    for (const Field &field : fields) {
        if (field.isCustom)
            keys.append(field.key);
    }
    return keys;
}

} // namespace

int runMerge(const BatchOptions &options, const QList<CustomFieldDef> &defs)
{
    if (const auto refusal = outputIsAnInput(options.output, options.paths)) {
        printError(*refusal);
        return 1;
    }
    const auto read = Jsonl::read(options.paths);
    if (const auto *error = std::get_if<TabrixError>(&read)) {
        printError(QStringLiteral("tabrix-cli: ") + error->message);
        return 1;
    }
    const Jsonl::Run &run = std::get<Jsonl::Run>(read);
    for (const QString &note : run.notes)
        printError(QStringLiteral("tabrix-cli: ") + note);
    if (run.missing > 0) {
        printError(QStringLiteral("tabrix-cli: %1 of %2 documents are missing from the outputs (the first is "
                                  "number %3 in file order); run the shards that were cut short again")
                       .arg(run.missing)
                       .arg(run.files.size() + run.missing)
                       .arg(run.firstMissing + 1));
        return 1;
    }

    // Other definitions than the shards had would silently give empty columns.
    QStringList expected;
    for (const CustomFieldDef &def : defs)
        expected.append(uuidText(def.id));
    for (qsizetype i = 0; i < run.files.size(); ++i) {
        const auto *loaded = std::get_if<Processing::Loaded>(&run.results[i]);
        if (loaded && customKeys(loaded->extraction.fields) != expected) {
            printError(QStringLiteral("tabrix-cli: %1 was read with other custom field definitions; give "
                                      "--merge the --custom-fields of the shard runs")
                           .arg(Pipeline::displayName(run.files[i])));
            return 1;
        }
    }

    for (qsizetype i = 0; i < run.files.size(); ++i) {
        if (const auto *error = std::get_if<TabrixError>(&run.results[i]))
            printError(Pipeline::displayName(run.files[i]) + QStringLiteral(": Failed: ") +
                       Pipeline::displayName(error->message));
    }
    return exportResults(options, run.files, run.results, defs);
}
