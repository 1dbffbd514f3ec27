#include "Flags.h"

#include "CustomFieldsDialog.h"
#include "model/Doubts.h"
#include "model/Money.h"
#include "model/TypedValue.h"

namespace Flags {

namespace {

// Why a custom field found nothing when its pattern is at fault; empty otherwise.
QString customFailure(const Field &field, const QSet<QString> &slowPatterns)
{
    const QString regexTag = QStringLiteral("re|");
    if (!field.isCustom || !field.value.isEmpty() || !field.source.startsWith(regexTag))
        return {};
    if (slowPatterns.contains(field.source))
        return QStringLiteral(
            "Its pattern took too long on a document and was stopped, so it was left empty.");
    const QString problem = CustomFieldsDialog::regexProblem(field.source.mid(regexTag.size()));
    return problem.isEmpty()
               ? QString()
               : QStringLiteral("Its pattern does not work (%1), so it finds nothing.").arg(problem);
}

} // namespace

QList<Flag> of(const DocItem &doc, const QSet<QString> &slowPatterns)
{
    QList<Flag> flags;
    const QList<Doubt> doubts = Doubts::of(doc.fields(), doc.items());
    const QLocale locale = Money::userLocale();
    for (const Field &f : doc.fields()) {
        if (f.edited && !f.isCustom) {
            if (const QString problem = TypedValue::problem(f.value, TypedValue::ofField(f.key), locale);
                !problem.isEmpty())
                flags.append({f.key, problem, true});
        }
        for (const QString &reason : Doubts::reasonsFor(doubts, f.key))
            flags.append({f.key, reason, false});
        if (const QString failure = customFailure(f, slowPatterns); !failure.isEmpty())
            flags.append({f.key, failure, false});
    }
    return flags;
}

QStringList reasonsFor(const QList<Flag> &flags, const QString &key)
{
    QStringList reasons;
    for (const Flag &flag : flags) {
        if (flag.key == key)
            reasons.append(flag.reason);
    }
    return reasons;
}

bool marked(const DocItem &doc, const QSet<QString> &slowPatterns)
{
    return !of(doc, slowPatterns).isEmpty() || !doc.approvalBlock().isEmpty();
}

} // namespace Flags
