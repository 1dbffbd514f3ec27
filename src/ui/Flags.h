#pragma once

#include "model/DocItem.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

/// Why a document's values need a look, as the form shows under each value and the queue marks: amounts
/// that cannot all be right, custom fields whose pattern failed, and values typed by hand that are not
/// what their box takes.
namespace Flags {

struct Flag {
    QString key;    ///< the field it is shown under
    QString reason; ///< one sentence for the user
    bool invalid;   ///< a typed value that blocks approval, rather than a doubt
};

/// Every flag of `doc`, field by field in form order. `slowPatterns` are the source tags of custom
/// patterns stopped at their matching bound (Store::slowPatterns).
QList<Flag> of(const DocItem &doc, const QSet<QString> &slowPatterns);

/// The reasons of the flags on field `key`.
QStringList reasonsFor(const QList<Flag> &flags, const QString &key);

/// Whether the queue marks `doc`: a flag on a field, or a line item typed wrong.
bool marked(const DocItem &doc, const QSet<QString> &slowPatterns);

} // namespace Flags
