#pragma once

#include <QList>
#include <QString>
#include <optional>

/// Part K of N of a run's input (--shard K/N), 1 ≤ K ≤ N. Part 1 of 1 is the whole input.
struct Shard {
    int k = 1;
    int n = 1;
};

/// Reads "K/N" with whole numbers 1 ≤ K ≤ N; nothing for any other text.
std::optional<Shard> parseShard(const QString &text);

/// The indices of the files of `shard` among `count` files in queue order: every i with i mod N = K − 1,
/// ascending. Together the N parts hold every index exactly once.
QList<qsizetype> shardIndices(qsizetype count, Shard shard);
