#include "Shard.h"

std::optional<Shard> parseShard(const QString &text)
{
    const qsizetype slash = text.indexOf(QLatin1Char('/'));
    bool kOk = false;
    bool nOk = false;
    const int k = text.left(slash).toInt(&kOk);
    const int n = text.mid(slash + 1).toInt(&nOk);
    if (slash < 0 || !kOk || !nOk || k < 1 || k > n)
        return std::nullopt;
    return Shard{k, n};
}

QList<qsizetype> shardIndices(qsizetype count, Shard shard)
{
    QList<qsizetype> indices;
    for (qsizetype i = shard.k - 1; i < count; i += shard.n)
        indices.append(i);
    return indices;
}
