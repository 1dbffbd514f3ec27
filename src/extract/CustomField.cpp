#include "CustomField.h"

namespace Extractor {

Field extractCustom(const CustomFieldDef &def, const QList<Row> &)
{
    Field field =
        emptyField(uuidText(def.id), def.name.isEmpty() ? QStringLiteral("Custom field") : def.name);
    field.isCustom = true;
    field.source = (def.isRegex ? QStringLiteral("re|") : QStringLiteral("kw|")) + def.pattern;
    return field;
}

} // namespace Extractor
