#pragma once

#include <QString>
#include <optional>

/// Which rules read a document. Core: the base rules alone, English labels, the plain recognition
/// procedure. Full: the base rules with our extensions (label vocabularies of other languages, receipt
/// rules, recognition tuned for scans, consistency checks); what the application and the command line use.
enum class RuleSet { Core, Full };

/// "core" or "full"; nothing for any other text.
inline std::optional<RuleSet> ruleSetFromName(const QString &name)
{
    if (name == QLatin1String("core"))
        return RuleSet::Core;
    if (name == QLatin1String("full"))
        return RuleSet::Full;
    return std::nullopt;
}
