#include "DocRecord.h"

#include <QFileInfo>

QString DocRecord::fileName() const
{
    return QFileInfo(path).fileName();
}

QString DocRecord::value(const QString &key) const
{
    return fieldValue(fields, key);
}

QString fieldValue(const QList<Field> &fields, const QString &key)
{
    for (const Field &f : fields) {
        if (f.key == key)
            return f.value;
    }
    return {};
}
