#pragma once

#include <QString>

/// The number of user-perceived characters (grapheme clusters) in `text`, as rules that count
/// "characters" mean them: "é" written as e + combining accent counts once.
qsizetype graphemeCount(const QString &text);
