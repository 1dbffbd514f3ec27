#include "StandardError.h"

#include <cstdio>

void printError(const QString &message)
{
    std::fprintf(stderr, "%s\n", message.toUtf8().constData());
}
