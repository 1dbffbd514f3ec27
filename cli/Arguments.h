#pragma once

#include "Commands.h"

#include "model/TabrixError.h"

#include <QString>
#include <QStringList>

/// What a tabrix-cli command line asks for.
struct Invocation {
    enum class Mode { batch, merge, lines, dumpLines, help, version };
    Mode mode = Mode::batch;
    BatchOptions options; ///< batch and merge; `options.rules` for every mode that extracts
    QString input;        ///< the FILE of --lines (or "-") and the PATH of --dump-lines
};

/// The invocation that `args` (the arguments after the program's name) ask for, or the usage error to
/// print above the usage text. Options are the documented ones; --rules may stand anywhere, also after
/// --lines FILE; "--" ends the options.
Expected<Invocation> parseArguments(const QStringList &args);

/// The usage text printed for --help and after a usage error.
const char *usageText();

/// "tabrix-cli VERSION", the project's version.
QString versionLine();
