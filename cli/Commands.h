#pragma once

#include "Shard.h"
#include "export/ExportFormat.h"
#include "intake/Processing.h"
#include "model/CustomFieldDef.h"
#include "model/RuleSet.h"

#include <QString>
#include <QStringList>

/// Options of the batch mode (tabrix-cli PATH...).
struct BatchOptions {
    QStringList paths;
    ExportFormat format = ExportFormat::json;
    bool jsonl = false; ///< --format jsonl: one line per finished document instead of `format`
    RowLayout layout = RowLayout::perDocument;
    QString output;       ///< empty: standard output
    QString customFields; ///< empty: the user's saved definitions
    int jobs = 0;         ///< 0: number of cores
    bool quiet = false;
    RuleSet rules = RuleSet::Full;
    Shard shard;        ///< the part of the expanded input to read
    bool merge = false; ///< `paths` are JSON Lines outputs to combine, nothing is read
};

/// Each returns the process exit status: 0 success, 1 usage or input error, 2 some documents failed.
int runLines(const QString &path, RuleSet rules);
int runDumpLines(const QString &path, RuleSet rules);
int runBatch(const BatchOptions &options);
/// --merge: the export of the JSON Lines outputs in `options.paths`.
int runMerge(const BatchOptions &options);

/// The definitions given with --custom-fields (`given`), or else the user's saved ones, which are only
/// read here: a missing or damaged saved file means none, as in the app.
Expected<QList<CustomFieldDef>> runDefinitions(const QString &given);

/// Writes the export of the ready documents among `results` (one per file of `files`, in that order)
/// where `options` say; returns the exit status: 2 when any document failed, 1 when the export could
/// not be written.
int exportResults(const BatchOptions &options, const QStringList &files,
                  const QList<Expected<Processing::Loaded>> &results, const QList<CustomFieldDef> &defs);
