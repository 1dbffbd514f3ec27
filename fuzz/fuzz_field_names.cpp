// Custom-field definitions with long, repeated and colliding names: whatever the names, a list the
// codec accepts exports one value and one confidence per field, none lost to a name another field has.
#include "export/JsonExport.h"
#include "extract/Extractor.h"
#include "model/CustomFieldCodec.h"
#include "model/DocRecord.h"

#include <QJsonObject>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    // Each NUL-separated piece is one field: its first byte says how often the rest is repeated (long
    // names), its second whether the pattern is a regular expression; the name is also the pattern.
    const QByteArray input(reinterpret_cast<const char *>(data), qsizetype(size));
    QList<CustomFieldDef> defs;
    for (const QByteArray &piece : input.split('\0')) {
        if (defs.size() == 40)
            break;
        const int repeat = piece.isEmpty() ? 1 : 1 + uchar(piece[0]) % 64;
        const bool regex = piece.size() > 1 && (uchar(piece[1]) & 1);
        const QString name = QString::fromUtf8(piece.mid(2).repeated(repeat));
        defs.append(CustomFieldDef{QUuid::createUuid(), name, name, regex});
    }

    const auto read = CustomFieldCodec::read(CustomFieldCodec::encode(defs));
    const auto *accepted = std::get_if<QList<CustomFieldDef>>(&read);
    if (!accepted) {
        if (!CustomFieldCodec::nameConflict(defs) && std::get<TabrixError>(read).message.isEmpty())
            std::abort();
        return 0;
    }
    if (CustomFieldCodec::nameConflict(*accepted))
        std::abort();

    const QList<TextLine> lines{
        {QStringLiteral("PO Number: 4711 Total 12.50"), QRectF(0.1, 0.1, 0.5, 0.02), 0},
        {QString::fromUtf8(input.left(200)), QRectF(0.1, 0.2, 0.5, 0.02), 0}};
    const Extractor::Result result = Extractor::extract(lines, *accepted, RuleSet::Full);
    const QJsonObject element =
        Exporter::jsonElement(DocRecord{QStringLiteral("/in/a.pdf"), result.fields, result.items}, *accepted);
    // The names refused are exactly the labels of the built-in fields, which come first.
    for (qsizetype i = 0; i < CustomFieldCodec::builtInLabels().size(); ++i) {
        if (result.fields.value(i).label != CustomFieldCodec::builtInLabels()[i] || result.fields[i].isCustom)
            std::abort();
    }
    if (element.value(QLatin1String("customFields")).toObject().size() != accepted->size() ||
        element.value(QLatin1String("confidence")).toObject().size() != result.fields.size())
        std::abort();
    return 0;
}
