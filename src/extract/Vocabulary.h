#pragma once

#include "Regex.h"
#include "RuleFeatures.h"
#include "model/RuleSet.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <memory>
#include <mutex>

/// Label words of other languages than English, one data file per language (vocabularies/xx.json),
/// added by the full rules to the built-in patterns as further alternatives. Adding a language is adding
/// one file.
///
/// A word list holds phrases. In a pattern a phrase matches case-insensitively as a whole word; a space
/// stands for any run of blanks (also none), "-" for an optional hyphen with blanks around it, "." for an
/// optional dot, an apostrophe for either apostrophe. A leading "*" lets the phrase end a compound word
/// ("*summe netto" also matches "Rechnungssumme netto").
namespace Vocabulary {

/// One set of languages' word lists, merged.
struct Lexicon {
    QStringList languages;             ///< codes, sorted ("de", "fr", …)
    QHash<QString, QStringList> lists; ///< list name ("total.gross") → phrases of every language
    QHash<QString, int> months;        ///< lower-case month name or abbreviation, dot removed → 1…12
};

/// The codes of the shipped languages, sorted.
QStringList shippedLanguages();

/// The shipped vocabularies of `languages` (codes; unknown ones are ignored).
Lexicon load(const QStringList &languages);

/// The vocabularies the full rules read, loaded once per process: every shipped language, or only those
/// named in TABRIX_LANGUAGES ("de,fr"; "en" names the built-in English words and adds nothing).
const Lexicon &active();

/// One phrase as pattern text, as the word lists read it (see above).
QString phraseText(const QString &phrase);

/// Pattern text matching any phrase of `list` in `lexicon`, longest first, as "a|b|c"; empty for none.
QString alternatives(const Lexicon &lexicon, const QString &list);

/// `pattern` with every "{list}" placeholder removed (Core), or replaced by "|" and the list's
/// alternatives in the active vocabularies (Full), so a base pattern's alternation gains them; "{list|}"
/// puts them before the alternatives that follow, so they are tried first.
QString expand(const QString &pattern, RuleSet rules);

} // namespace Vocabulary

/// A built-in pattern under both rule sets: the base pattern for the core rules and the pattern with
/// the active vocabularies' words for the full rules (see Vocabulary::expand). Each form is expanded and
/// compiled on its first use (thread-safe), so a rule set never pays for the other's form.
class RulePattern {
public:
    explicit RulePattern(const QString &pattern, bool caseInsensitive = true);
    /// A base pattern and a differently shaped full one (which may hold placeholders).
    RulePattern(const QString &core, const QString &full, bool caseInsensitive = true);
    RulePattern(const RulePattern &) = delete;
    RulePattern &operator=(const RulePattern &) = delete;
    ~RulePattern();

    const Regex &operator()(const RuleFeatures &features) const;

private:
    struct Form {
        QString text; ///< the core form as compiled; the full form before expansion
        mutable std::once_flag once;
        mutable std::unique_ptr<Regex> regex;
    };
    Form m_core;
    Form m_full;
    bool m_caseInsensitive;
};
