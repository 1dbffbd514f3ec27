#include "Commands.h"

int runDumpLines(const QString &)
{
    printError(QStringLiteral("tabrix-cli: --dump-lines is not available in this build yet"));
    return 1;
}
