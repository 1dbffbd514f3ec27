#pragma once

#include <QString>

/// Writes `message` and a line break to standard error, as UTF-8.
void printError(const QString &message);
