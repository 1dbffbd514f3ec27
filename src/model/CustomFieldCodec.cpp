#include "CustomFieldCodec.h"

#include "JsonText.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

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

std::optional<QList<CustomFieldDef>> decode(const QJsonArray &array)
{
    QList<CustomFieldDef> defs;
    defs.reserve(array.size());
    for (const QJsonValue &value : array) {
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

std::optional<QList<CustomFieldDef>> decode(const QByteArray &json)
{
    QJsonParseError error{};
    const QJsonDocument doc = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError || !doc.isArray())
        return std::nullopt;
    return decode(doc.array());
}

QString notAFileMessage()
{
    return QStringLiteral("That file isn't a Tabrix custom-fields JSON file.");
}

} // namespace CustomFieldCodec
