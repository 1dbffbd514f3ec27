#pragma once

#include "CustomFieldDef.h"
#include "TabrixError.h"

#include <QByteArray>
#include <QJsonArray>
#include <QList>
#include <QStringList>
#include <optional>

/// Custom field definition lists in their JSON form: an array of objects with exactly the members
/// "id" (canonical UUID text), "isRegex" (bool), "name" and "pattern" (strings). Decoding is strict:
/// any missing member, wrong type, malformed UUID, an id given twice or a name conflict (nameConflict)
/// rejects the whole list.
namespace CustomFieldCodec {

/// The custom-fields file text of `defs`, in list order: our JSON text form with sorted keys and
/// "/" escaped as "\/". Never fails; an empty list is "[]".
QByteArray encode(const QList<CustomFieldDef> &defs);

std::optional<QList<CustomFieldDef>> decode(const QJsonArray &array);
std::optional<QList<CustomFieldDef>> decode(const QByteArray &json);

/// The labels of the built-in fields, which a custom field may not take: its values and confidences are
/// exported under its name beside theirs.
const QStringList &builtInLabels();

/// Why `defs` cannot be exported side by side, for the user: a name given twice (letter case ignored; an
/// empty name counts as "Custom field", the label it is shown with) or a built-in field's label.
/// Nothing when every name is its own.
std::optional<QString> nameConflict(const QList<CustomFieldDef> &defs);

/// The definitions in custom-fields file text, or the message for the user: notAFileMessage(), for
/// an id given twice a message naming it and the two fields, or the nameConflict.
Expected<QList<CustomFieldDef>> read(const QByteArray &json);
/// read() on the file at `path`; a file that cannot be read gives its path and the system's reason.
Expected<QList<CustomFieldDef>> readFile(const QString &path);

/// The user's "Tabrix" data folder, where the window keeps "custom-fields.json".
QString defaultFolder();
/// Where the definitions file lies in `folder` (nothing is created). The window saves the user's
/// definitions at fileIn(defaultFolder()); the command-line tool reads them from there.
QString fileIn(const QString &folder);

/// The message for a file that decode() rejects, when the user chose it (import, command line).
QString notAFileMessage();

} // namespace CustomFieldCodec
