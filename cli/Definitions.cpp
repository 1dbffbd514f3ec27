#include "Commands.h"

#include "model/CustomFieldCodec.h"

Expected<QList<CustomFieldDef>> runDefinitions(const QString &given)
{
    if (given.isEmpty()) {
        // A missing or damaged saved file means no definitions, as in the app.
        const auto saved =
            CustomFieldCodec::readFile(CustomFieldCodec::fileIn(CustomFieldCodec::defaultFolder()));
        return std::holds_alternative<TabrixError>(saved) ? QList<CustomFieldDef>{} : saved;
    }
    return CustomFieldCodec::readFile(given);
}
