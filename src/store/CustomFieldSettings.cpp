#include "CustomFieldSettings.h"

#include "export/SaveFile.h"
#include "extract/CustomField.h"
#include "model/CustomFieldCodec.h"

#include <QDir>
#include <QFile>

CustomFieldSettings::CustomFieldSettings(QString folder) : m_folder(std::move(folder))
{
    QFile file(path());
    if (!file.open(QIODevice::ReadOnly))
        return;
    if (const auto defs = CustomFieldCodec::decode(file.readAll()))
        m_defs = *defs;
}

void CustomFieldSettings::set(const QList<CustomFieldDef> &defs)
{
    m_defs = defs;
    Exporter::saveFile(path(), CustomFieldCodec::encode(m_defs));
}

QString CustomFieldSettings::path() const
{
    QDir().mkpath(m_folder);
    return CustomFieldCodec::fileIn(m_folder);
}

bool CustomFieldSettings::noteSlow(const QList<QUuid> &ids)
{
    const qsizetype before = m_slowPatterns.size();
    for (const QUuid &id : ids) {
        for (const CustomFieldDef &def : std::as_const(m_defs)) {
            if (def.id == id)
                m_slowPatterns.insert(Extractor::customSource(def));
        }
    }
    return m_slowPatterns.size() != before;
}
