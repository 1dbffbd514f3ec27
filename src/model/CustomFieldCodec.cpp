#include "CustomFieldCodec.h"

#include "JsonText.h"

#include <QFile>
#include <QHash>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>
#include <QStandardPaths>

namespace CustomFieldCodec {

namespace {

std::optional<QUuid> parseUuid(const QString &text)
{
    static const QRegularExpression shape(
        QStringLiteral("^[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}$"));
    if (!shape.match(text).hasMatch())
        return std::nullopt;
    return QUuid::fromString(text);
}

} // namespace

QByteArray encode(const QList<CustomFieldDef> &defs)
{
    QJsonArray array;
    for (const CustomFieldDef &def : defs) {
        array.append(QJsonObject{{QStringLiteral("id"), uuidText(def.id)},
                                 {QStringLiteral("isRegex"), def.isRegex},
                                 {QStringLiteral("name"), def.name},
                                 {QStringLiteral("pattern"), def.pattern}});
    }
    return JsonText::write(array, JsonText::Slashes::Escaped);
}

namespace {

std::optional<QList<CustomFieldDef>> decodeEach(const QJsonArray &array)
{
    QList<CustomFieldDef> defs;
    defs.reserve(array.size());
    for (const QJsonValue value : array) {
        if (!value.isObject())
            return std::nullopt;
        const QJsonObject object = value.toObject();
        const QJsonValue id = object.value(QLatin1String("id"));
        const QJsonValue isRegex = object.value(QLatin1String("isRegex"));
        const QJsonValue name = object.value(QLatin1String("name"));
        const QJsonValue pattern = object.value(QLatin1String("pattern"));
        if (!id.isString() || !isRegex.isBool() || !name.isString() || !pattern.isString())
            return std::nullopt;
        const auto uuid = parseUuid(id.toString());
        if (!uuid)
            return std::nullopt;
        defs.append(CustomFieldDef{*uuid, name.toString(), pattern.toString(), isRegex.toBool()});
    }
    return defs;
}

// The first definition whose id an earlier one already has, with that earlier one.
std::optional<std::pair<CustomFieldDef, CustomFieldDef>> duplicate(const QList<CustomFieldDef> &defs)
{
    QHash<QUuid, qsizetype> seen;
    for (qsizetype i = 0; i < defs.size(); ++i) {
        if (seen.contains(defs[i].id))
            return std::pair(defs[seen.value(defs[i].id)], defs[i]);
        seen.insert(defs[i].id, i);
    }
    return std::nullopt;
}

} // namespace

const QStringList &builtInLabels()
{
    static const QStringList labels{QStringLiteral("Vendor"),   QStringLiteral("Invoice / receipt no."),
                                    QStringLiteral("Date"),     QStringLiteral("Due date"),
                                    QStringLiteral("Currency"), QStringLiteral("Subtotal"),
                                    QStringLiteral("Tax"),      QStringLiteral("Total")};
    return labels;
}

std::optional<QString> nameConflict(const QList<CustomFieldDef> &defs)
{
    QHash<QString, QString> taken;
    for (const QString &label : builtInLabels())
        taken.insert(label.toCaseFolded(), label);
    QSet<QString> builtIn(taken.keyBegin(), taken.keyEnd());
    for (const CustomFieldDef &def : defs) {
        const QString name = def.name.isEmpty() ? QStringLiteral("Custom field") : def.name;
        const QString folded = name.toCaseFolded();
        if (builtIn.contains(folded))
            return QStringLiteral("The custom field \"%1\" has the name of a built-in field; each field "
                                  "needs a name of its own.")
                .arg(name);
        if (taken.contains(folded))
            return QStringLiteral("Two custom fields are named \"%1\" (letter case aside); each field needs "
                                  "a name of its own.")
                .arg(name);
        taken.insert(folded, name);
    }
    return std::nullopt;
}

std::optional<QList<CustomFieldDef>> decode(const QJsonArray &array)
{
    auto defs = decodeEach(array);
    // Two fields with one id would show one field's value twice; two with one name export one value.
    if (!defs || duplicate(*defs) || nameConflict(*defs))
        return std::nullopt;
    return defs;
}

std::optional<QList<CustomFieldDef>> decode(const QByteArray &json)
{
    const auto read = CustomFieldCodec::read(json);
    if (const auto *defs = std::get_if<QList<CustomFieldDef>>(&read))
        return *defs;
    return std::nullopt;
}

Expected<QList<CustomFieldDef>> read(const QByteArray &json)
{
    QJsonParseError error{};
    const QJsonDocument doc = QJsonDocument::fromJson(json, &error);
    const auto defs =
        error.error == QJsonParseError::NoError && doc.isArray() ? decodeEach(doc.array()) : std::nullopt;
    if (!defs)
        return TabrixError{notAFileMessage()};
    if (const auto twice = duplicate(*defs)) {
        return TabrixError{
            QStringLiteral("Two custom fields in that file have the same id %1 (\"%2\" and \"%3\"); "
                           "each field needs its own id.")
                .arg(uuidText(twice->first.id), twice->first.name, twice->second.name)};
    }
    if (const auto conflict = nameConflict(*defs))
        return TabrixError{*conflict};
    return *defs;
}

Expected<QList<CustomFieldDef>> readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return TabrixError{path + QStringLiteral(": ") + file.errorString()};
    return read(file.readAll());
}

QString notAFileMessage()
{
    return QStringLiteral("That file isn't a Tabrix custom-fields JSON file.");
}

QString defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Tabrix");
}

QString fileIn(const QString &folder)
{
    return folder + QStringLiteral("/custom-fields.json");
}

} // namespace CustomFieldCodec
