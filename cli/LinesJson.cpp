#include "LinesJson.h"

#include "model/CustomFieldCodec.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <cmath>

namespace LinesJson {

namespace {

TabrixError inputError(const QString &what)
{
    return TabrixError{QStringLiteral("invalid lines input: ") + what};
}

QJsonArray rectJson(const QRectF &r)
{
    return QJsonArray{r.x(), r.y(), r.width(), r.height()};
}

QJsonValue boxJson(const std::optional<PageBox> &box)
{
    if (!box)
        return QJsonValue::Null;
    return QJsonObject{{QStringLiteral("page"), box->page}, {QStringLiteral("rect"), rectJson(box->rect)}};
}

bool isWholeNumber(const QJsonValue &v)
{
    return v.isDouble() && std::isfinite(v.toDouble()) && v.toDouble() == std::floor(v.toDouble()) &&
           std::abs(v.toDouble()) < 2147483648.0;
}

/// A box written by boxJson; anything else (null included) is no box.
std::optional<PageBox> parseBox(const QJsonValue &value)
{
    const QJsonArray rect = value[QLatin1String("rect")].toArray();
    if (!value.isObject() || rect.size() != 4)
        return std::nullopt;
    return PageBox{value[QLatin1String("page")].toInt(),
                   QRectF(rect[0].toDouble(), rect[1].toDouble(), rect[2].toDouble(), rect[3].toDouble())};
}

} // namespace

Expected<Input> parseInput(const QByteArray &json)
{
    QJsonParseError error{};
    const QJsonDocument doc = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        return inputError(
            QStringLiteral("malformed JSON (%1 at offset %2)").arg(error.errorString()).arg(error.offset));

    Input input;
    QJsonArray lines;
    if (doc.isArray()) {
        lines = doc.array();
    } else if (doc.isObject()) {
        const QJsonObject root = doc.object();
        const QJsonValue linesValue = root.value(QLatin1String("lines"));
        if (!linesValue.isArray())
            return inputError(QStringLiteral("\"lines\" must be an array"));
        lines = linesValue.toArray();
        const QJsonValue custom = root.value(QLatin1String("customFields"));
        if (!custom.isUndefined() && !custom.isNull()) {
            const auto defs = custom.isArray() ? CustomFieldCodec::decode(custom.toArray()) : std::nullopt;
            if (!defs)
                return inputError(
                    QStringLiteral("\"customFields\" is not a valid list of custom field definitions"));
            input.customFields = *defs;
        }
    } else {
        return inputError(QStringLiteral("expected an object or an array"));
    }

    input.lines.reserve(lines.size());
    for (qsizetype i = 0; i < lines.size(); ++i) {
        const QString where = QStringLiteral("line %1: ").arg(i);
        if (!lines[i].isObject())
            return inputError(where + QStringLiteral("not an object"));
        const QJsonObject object = lines[i].toObject();
        const QJsonValue text = object.value(QLatin1String("text"));
        if (!text.isString())
            return inputError(where + QStringLiteral("\"text\" must be a string"));
        const QJsonArray rect = object.value(QLatin1String("rect")).toArray();
        const bool rectOk = object.value(QLatin1String("rect")).isArray() && rect.size() == 4 &&
                            std::all_of(rect.begin(), rect.end(), [](const QJsonValue &v) {
                                return v.isDouble() && std::isfinite(v.toDouble());
                            });
        if (!rectOk)
            return inputError(where + QStringLiteral("\"rect\" must be [x, y, w, h] numbers"));
        const QJsonValue page = object.value(QLatin1String("page"));
        if (!page.isUndefined() && !isWholeNumber(page))
            return inputError(where + QStringLiteral("\"page\" must be an integer"));
        input.lines.append(
            TextLine{text.toString(),
                     QRectF(rect[0].toDouble(), rect[1].toDouble(), rect[2].toDouble(), rect[3].toDouble()),
                     page.isUndefined() ? 0 : int(page.toDouble())});
    }
    return input;
}

QByteArray writeLines(const QList<TextLine> &lines)
{
    QJsonArray array;
    for (const TextLine &line : lines) {
        array.append(QJsonObject{{QStringLiteral("text"), line.text},
                                 {QStringLiteral("rect"), rectJson(line.rect)},
                                 {QStringLiteral("page"), line.page}});
    }
    return QJsonDocument(QJsonObject{{QStringLiteral("lines"), array}}).toJson(QJsonDocument::Compact);
}

QJsonArray fieldsJson(const QList<Field> &fields)
{
    QJsonArray array;
    for (const Field &f : fields) {
        array.append(QJsonObject{{QStringLiteral("key"), f.key},
                                 {QStringLiteral("label"), f.label},
                                 {QStringLiteral("value"), f.value},
                                 {QStringLiteral("confidence"), f.confidence},
                                 {QStringLiteral("edited"), f.edited},
                                 {QStringLiteral("isCustom"), f.isCustom},
                                 {QStringLiteral("source"), f.source},
                                 {QStringLiteral("box"), boxJson(f.box)}});
    }
    return array;
}

QJsonArray itemsJson(const QList<LineItem> &items)
{
    QJsonArray array;
    for (const LineItem &item : items) {
        array.append(QJsonObject{{QStringLiteral("description"), item.description},
                                 {QStringLiteral("quantity"), item.quantity},
                                 {QStringLiteral("unitPrice"), item.unitPrice},
                                 {QStringLiteral("amount"), item.amount},
                                 {QStringLiteral("confidence"), item.confidence},
                                 {QStringLiteral("box"), boxJson(item.box)}});
    }
    return array;
}

std::optional<QList<Field>> parseFields(const QJsonArray &array)
{
    QList<Field> fields;
    for (const QJsonValue value : array) {
        const QJsonObject o = value.toObject();
        if (!o.value(QLatin1String("key")).isString() || !o.value(QLatin1String("value")).isString() ||
            !o.value(QLatin1String("confidence")).isDouble())
            return std::nullopt;
        Field f;
        f.key = o.value(QLatin1String("key")).toString();
        f.label = o.value(QLatin1String("label")).toString();
        f.value = o.value(QLatin1String("value")).toString();
        f.confidence = o.value(QLatin1String("confidence")).toDouble();
        f.edited = o.value(QLatin1String("edited")).toBool();
        f.isCustom = o.value(QLatin1String("isCustom")).toBool();
        f.source = o.value(QLatin1String("source")).toString();
        f.box = parseBox(o.value(QLatin1String("box")));
        fields.append(f);
    }
    return fields;
}

std::optional<QList<LineItem>> parseItems(const QJsonArray &array)
{
    QList<LineItem> items;
    for (const QJsonValue value : array) {
        const QJsonObject o = value.toObject();
        if (!o.value(QLatin1String("description")).isString() || !o.value(QLatin1String("amount")).isString())
            return std::nullopt;
        LineItem item;
        item.description = o.value(QLatin1String("description")).toString();
        item.quantity = o.value(QLatin1String("quantity")).toString();
        item.unitPrice = o.value(QLatin1String("unitPrice")).toString();
        item.amount = o.value(QLatin1String("amount")).toString();
        item.confidence = o.value(QLatin1String("confidence")).toDouble();
        item.box = parseBox(o.value(QLatin1String("box")));
        items.append(item);
    }
    return items;
}

QByteArray writeResult(const Extractor::Result &result)
{
    QJsonArray rows;
    for (const Row &row : result.rows) {
        QJsonArray offsets;
        for (qsizetype offset : row.offsets)
            offsets.append(qint64(offset));
        rows.append(QJsonObject{{QStringLiteral("page"), row.page},
                                {QStringLiteral("text"), row.text},
                                {QStringLiteral("offsets"), offsets},
                                {QStringLiteral("rect"), rectJson(row.rect)}});
    }
    const QJsonObject root{{QStringLiteral("fields"), fieldsJson(result.fields)},
                           {QStringLiteral("items"), itemsJson(result.items)},
                           {QStringLiteral("rows"), rows}};
    return QJsonDocument(root).toJson(QJsonDocument::Compact);
}

} // namespace LinesJson
