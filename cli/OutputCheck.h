#pragma once

#include <QString>
#include <QStringList>
#include <optional>

/// The refusal of an `output` that would replace one of `inputs`: the same file by device and inode, so
/// also through a link or another spelling of its path. Nothing when `output` does not exist yet or is
/// none of them. Checked before anything is opened for writing.
std::optional<QString> outputIsAnInput(const QString &output, const QStringList &inputs);
