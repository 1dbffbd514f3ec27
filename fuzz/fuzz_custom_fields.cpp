// The custom-fields file reader on arbitrary bytes: it fails with a message or gives definitions that
// write and read back unchanged.
#include "model/CustomFieldCodec.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const auto read =
        CustomFieldCodec::read(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
    if (const auto *error = std::get_if<TabrixError>(&read)) {
        if (error->message.isEmpty())
            std::abort();
        return 0;
    }
    const auto &defs = std::get<QList<CustomFieldDef>>(read);
    const auto again = CustomFieldCodec::read(CustomFieldCodec::encode(defs));
    const auto *back = std::get_if<QList<CustomFieldDef>>(&again);
    // Names and patterns pass through UTF-8, so compare what UTF-8 can carry.
    if (!back || back->size() != defs.size())
        std::abort();
    for (qsizetype i = 0; i < defs.size(); ++i) {
        const CustomFieldDef &a = defs[i], &b = (*back)[i];
        if (a.id != b.id || a.isRegex != b.isRegex || QString::fromUtf8(a.name.toUtf8()) != b.name ||
            QString::fromUtf8(a.pattern.toUtf8()) != b.pattern)
            std::abort();
    }
    return 0;
}
