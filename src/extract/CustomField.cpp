#include "CustomField.h"

#include "Regex.h"
#include "Rows.h"

#include <algorithm>

namespace Extractor {

namespace {

// What may sit between a keyword and its value: "PO Number: 4711", "Ref # 12", "Code = X".
QString trimLabelPunctuation(const QString &text)
{
    const auto isPunct = [](QChar c) {
        return c == u' ' || c == u':' || c == u'#' || c == u'=' || c == u'-' || c == u'\t';
    };
    qsizetype from = 0;
    qsizetype to = text.size();
    while (from < to && isPunct(text[from]))
        ++from;
    while (to > from && isPunct(text[to - 1]))
        --to;
    return text.mid(from, to - from);
}

void byKeyword(const QString &keyword, const QList<Row> &rows, Field &field)
{
    for (qsizetype i = 0; i < rows.size(); ++i) {
        const Row &row = rows[i];
        const qsizetype at = row.text.indexOf(keyword, 0, Qt::CaseInsensitive);
        if (at < 0)
            continue;
        const qsizetype end = at + keyword.size();
        const QString candidate = trimLabelPunctuation(row.text.mid(end));
        if (!candidate.isEmpty()) {
            field.value = candidate;
            field.confidence = 0.75;
            field.box = row.box(TextRange{end, row.text.size() - end});
        } else if (i + 1 < rows.size()) {
            // A label alone on its row: the value stands on the row below.
            const Row &next = rows[i + 1];
            field.value = next.text;
            field.confidence = 0.55;
            field.box = PageBox{next.page, next.rect};
        }
        return;
    }
}

// Group 1 when the pattern has one and it took part, else the whole match.
TextRange chosenRange(const Regex &rx, const Regex::Match &m)
{
    return rx.groupCount() >= 1 && m.has(1) ? m.range(1) : m.range();
}

void byPattern(const QString &pattern, const QList<Row> &rows, Field &field, Regex::Budget &budget)
{
    const auto rx = Regex::tryCompile(pattern);
    if (!rx)
        return;
    for (const Row &row : rows) {
        if (const auto m = rx->match(row.text, 0, budget)) {
            const TextRange range = chosenRange(*rx, *m);
            field.value = row.text.mid(range.start, range.length).trimmed();
            field.confidence = 0.85;
            field.box = row.box(range);
            return;
        }
    }
    // Nothing within one row: let the pattern span rows.
    const QString joined = documentText(rows);
    if (const auto m = rx->match(joined, 0, budget)) {
        const TextRange range = chosenRange(*rx, *m);
        field.value = joined.mid(range.start, range.length).trimmed();
        field.confidence = 0.7;
    }
}

} // namespace

namespace {

Field extractWith(const CustomFieldDef &def, const QList<Row> &rows, Regex::Budget &budget)
{
    Field field =
        emptyField(uuidText(def.id), def.name.isEmpty() ? QStringLiteral("Custom field") : def.name);
    field.isCustom = true;
    field.source = customSource(def);
    const QString pattern = def.pattern.trimmed();
    if (pattern.isEmpty())
        return field;
    if (def.isRegex)
        byPattern(pattern, rows, field, budget);
    else
        byKeyword(pattern, rows, field);
    return field;
}

} // namespace

Field extractCustom(const CustomFieldDef &def, const QList<Row> &rows, bool *abandoned)
{
    Regex::Budget budget;
    Field field = extractWith(def, rows, budget);
    if (abandoned)
        *abandoned = budget.exhausted();
    return field;
}

QList<Field> extractCustomFields(const QList<CustomFieldDef> &defs, const QList<Row> &rows,
                                 QList<QUuid> *slow)
{
    Regex::Budget budget;
    QList<Field> fields;
    for (const CustomFieldDef &def : defs) {
        const bool spentBefore = budget.exhausted();
        fields.append(extractWith(def, rows, budget));
        if (!spentBefore && budget.exhausted() && slow)
            slow->append(def.id);
    }
    return fields;
}

QString customSource(const CustomFieldDef &def)
{
    return (def.isRegex ? QStringLiteral("re|") : QStringLiteral("kw|")) + def.pattern;
}

Resync resync(const QList<Field> &fields, const QList<CustomFieldDef> &definitions, const QList<Row> &rows)
{
    Resync out;
    for (const Field &f : fields) {
        if (!f.isCustom)
            out.fields.append(f);
    }
    for (const CustomFieldDef &def : definitions) {
        const QString key = uuidText(def.id);
        const QString label = def.name.isEmpty() ? QStringLiteral("Custom field") : def.name;
        const QString source = customSource(def);
        const auto existing = std::find_if(fields.cbegin(), fields.cend(), [&](const Field &f) {
            return f.isCustom && f.key == key && f.source == source;
        });
        if (existing != fields.cend()) {
            // Same definition, maybe renamed: keep the value and any hand correction.
            Field kept = *existing;
            kept.label = label;
            out.fields.append(kept);
        } else if (!def.isRegex) {
            out.fields.append(extractCustom(def, rows)); // a keyword search is linear
        } else {
            Field placeholder = emptyField(key, label);
            placeholder.isCustom = true;
            out.fields.append(placeholder);
            out.pending.append(def);
        }
    }
    return out;
}

bool fillPending(QList<Field> &fields, const QList<Field> &extracted)
{
    bool filled = false;
    for (Field &f : fields) {
        if (!f.isCustom || !f.source.isEmpty())
            continue;
        const auto found = std::find_if(extracted.cbegin(), extracted.cend(),
                                        [&](const Field &e) { return e.key == f.key; });
        if (found != extracted.cend()) {
            f = *found;
            filled = true;
        }
    }
    return filled;
}

} // namespace Extractor
