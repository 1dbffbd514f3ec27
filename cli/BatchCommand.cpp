#include "Commands.h"

int runBatch(const BatchOptions &)
{
    printError(QStringLiteral("tabrix-cli: batch processing is not available in this build yet"));
    return 1;
}
