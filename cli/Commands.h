#pragma once

#include "model/RuleSet.h"

#include <QString>
#include <QStringList>

/// Options of the batch mode (tabrix-cli PATH...).
struct BatchOptions {
    QStringList paths;
    QString format = QStringLiteral("json");     ///< json, csv, tsv or xlsx
    QString layout = QStringLiteral("document"); ///< document or line-item
    QString output;                              ///< empty: standard output
    QString customFields;                        ///< empty: the user's saved definitions
    int jobs = 0;                                ///< 0: number of cores
    bool quiet = false;
    RuleSet rules = RuleSet::Full;
};

/// Each returns the process exit status: 0 success, 1 usage or input error, 2 some documents failed.
int runLines(const QString &path, RuleSet rules);
int runDumpLines(const QString &path, RuleSet rules);
int runBatch(const BatchOptions &options);

/// Writes one line to standard error.
void printError(const QString &message);
