#pragma once

#include "model/CustomFieldDef.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QUuid>

/// The user's custom field definitions as the window keeps them: read from "custom-fields.json" in the
/// data folder when created, saved there on every change, and the patterns that proved too slow to match.
class CustomFieldSettings {
public:
    /// Reads the definitions kept in `folder`; a missing or corrupt file means none, and a corrupt one is
    /// left alone until the next change overwrites it.
    explicit CustomFieldSettings(QString folder);

    /// The definitions in the order their fields appear in documents and exports.
    const QList<CustomFieldDef> &defs() const { return m_defs; }
    /// Replaces the definitions and saves them at once; failures to save are silent.
    void set(const QList<CustomFieldDef> &defs);
    /// Location of "custom-fields.json"; creates its folder on every call, ignoring failure.
    QString path() const;

    /// Sources (Extractor::customSource) of the patterns abandoned at the step limit on at least one
    /// document.
    const QSet<QString> &slowPatterns() const { return m_slowPatterns; }
    /// Notes the current definitions with these ids as too slow; true when one was not noted before.
    bool noteSlow(const QList<QUuid> &ids);

private:
    QString m_folder;
    QList<CustomFieldDef> m_defs;
    QSet<QString> m_slowPatterns;
};
