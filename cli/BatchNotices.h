#pragma once

#include "intake/Processing.h"
#include "model/CustomFieldDef.h"

#include <QSet>

/// Notes on documents that were read, but not wholly, printed on standard error as they finish: a custom
/// field's pattern stopped at its matching bound (once per definition, also with --quiet, since values
/// are missing) and a file cut at its page or frame limit (unless --quiet). A pattern that does not
/// compile, whose column stays empty, is named once when the notices are made.
class BatchNotices {
public:
    BatchNotices(const QList<CustomFieldDef> &defs, bool quiet);
    void read(const QString &path, const Processing::Loaded &loaded);

private:
    QList<CustomFieldDef> m_defs;
    bool m_quiet;
    QSet<QUuid> m_toldSlow;
};
