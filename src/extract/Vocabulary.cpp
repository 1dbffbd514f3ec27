#include "Vocabulary.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <algorithm>

// Resources of a static library are registered by hand, outside any namespace.
static void registerVocabularies()
{
    Q_INIT_RESOURCE(vocabularies);
}

namespace Vocabulary {

namespace {

const QString folder = QStringLiteral(":/vocabularies");

void merge(Lexicon &lexicon, const QJsonObject &file)
{
    for (auto it = file.begin(); it != file.end(); ++it) {
        if (it.key() == QLatin1String("months")) {
            const QJsonArray months = it.value().toArray();
            for (qsizetype m = 0; m < months.size() && m < 12; ++m) {
                for (const QJsonValue name : months[m].toArray()) {
                    lexicon.months.insert(name.toString().toLower().remove(u'.'), int(m) + 1);
                    lexicon.lists[QStringLiteral("months")].append(name.toString());
                }
            }
            continue;
        }
        if (!it.value().isArray())
            continue;
        QStringList &words = lexicon.lists[it.key()];
        for (const QJsonValue word : it.value().toArray()) {
            if (!word.toString().trimmed().isEmpty() && !words.contains(word.toString()))
                words.append(word.toString());
        }
    }
}

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber();
}

// One phrase as pattern text (see the header for what its characters mean), without the word
// boundaries it needs before and after it, which are reported instead.
struct PhrasePattern {
    QString body;
    bool boundaryBefore = false;
    bool boundaryAfter = false;
};

PhrasePattern phrasePattern(QString phrase)
{
    phrase = phrase.trimmed();
    const bool compoundTail = phrase.startsWith(u'*');
    if (compoundTail)
        phrase.remove(0, 1);
    PhrasePattern pattern;
    pattern.boundaryBefore = !compoundTail && !phrase.isEmpty() && isWordChar(phrase.front());
    pattern.boundaryAfter = !phrase.isEmpty() && isWordChar(phrase.back());
    QString &out = pattern.body;
    for (qsizetype i = 0; i < phrase.size(); ++i) {
        const QChar c = phrase[i];
        if (c.isSpace()) {
            while (i + 1 < phrase.size() && phrase[i + 1].isSpace())
                ++i;
            out += QLatin1String("\\s*");
        } else if (c == u'-') {
            out += QLatin1String("\\s*-?\\s*");
        } else if (c == u'.') {
            out += QLatin1String("\\.?");
        } else if (c == u'\'' || c == u'\u2019') {
            out += QLatin1String("['\u2019]?");
        } else if (c.unicode() < 0x80 && !isWordChar(c)) {
            out += u'\\';
            out += c;
        } else {
            out += c;
        }
    }
    return pattern;
}

} // namespace

QString phraseText(const QString &phrase)
{
    const PhrasePattern pattern = phrasePattern(phrase);
    QString text = pattern.body;
    if (pattern.boundaryBefore)
        text.prepend(QLatin1String("\\b"));
    if (pattern.boundaryAfter)
        text.append(QLatin1String("\\b"));
    return text;
}

QStringList shippedLanguages()
{
    registerVocabularies();
    QStringList codes;
    for (const QString &name : QDir(folder).entryList({QStringLiteral("*.json")}, QDir::Files, QDir::Name))
        codes.append(name.chopped(5));
    return codes;
}

Lexicon load(const QStringList &languages)
{
    Lexicon lexicon;
    const QStringList shipped = shippedLanguages();
    for (const QString &code : shipped) {
        if (!languages.contains(code))
            continue;
        QFile file(folder + u'/' + code + QLatin1String(".json"));
        if (!file.open(QIODevice::ReadOnly))
            continue;
        const QJsonDocument json = QJsonDocument::fromJson(file.readAll());
        // The files are built in; one that does not parse is a programming fault.
        Q_ASSERT(json.isObject());
        merge(lexicon, json.object());
        lexicon.languages.append(code);
    }
    return lexicon;
}

const Lexicon &active()
{
    static const Lexicon lexicon = [] {
        const QString wanted = qEnvironmentVariable("TABRIX_LANGUAGES").trimmed().toLower();
        if (wanted.isEmpty())
            return load(shippedLanguages());
        QStringList codes;
        for (const QString &code :
             wanted.split(QRegularExpression(QStringLiteral("[,;:\\s]+")), Qt::SkipEmptyParts))
            codes.append(code);
        return load(codes);
    }();
    return lexicon;
}

QString alternatives(const Lexicon &lexicon, const QString &list)
{
    QStringList phrases = lexicon.lists.value(list);
    // Longest first, so that "Rechnungsnummer" is tried before "Rechnung" at the same place.
    std::stable_sort(phrases.begin(), phrases.end(),
                     [](const QString &a, const QString &b) { return a.size() > b.size(); });
    // Neighbours needing the same boundaries share them: "\b(?:a|b)\b" tries a, then b, as "\ba\b|\bb\b"
    // does, but a position inside a word fails once instead of once per phrase.
    QStringList groups;
    for (qsizetype i = 0; i < phrases.size();) {
        const PhrasePattern first = phrasePattern(phrases[i]);
        QStringList bodies{first.body};
        qsizetype j = i + 1;
        for (; j < phrases.size(); ++j) {
            const PhrasePattern next = phrasePattern(phrases[j]);
            if (next.boundaryBefore != first.boundaryBefore || next.boundaryAfter != first.boundaryAfter)
                break;
            bodies.append(next.body);
        }
        const QString boundary = QStringLiteral("\\b");
        groups.append(
            (first.boundaryBefore ? boundary : QString()) +
            (bodies.size() > 1 ? QStringLiteral("(?:") + bodies.join(u'|') + u')' : bodies.first()) +
            (first.boundaryAfter ? boundary : QString()));
        i = j;
    }
    return groups.join(u'|');
}

QString expand(const QString &pattern, RuleSet rules)
{
    static const QRegularExpression placeholder(QStringLiteral("\\{([a-z]+(?:\\.[a-z]+)*)(\\|?)\\}"));
    QString out;
    qsizetype from = 0;
    for (auto it = placeholder.globalMatch(pattern); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        out += QStringView(pattern).mid(from, m.capturedStart() - from);
        if (rules == RuleSet::Full) {
            const QString words = alternatives(active(), m.captured(1));
            if (!words.isEmpty())
                out += m.capturedLength(2) ? words + u'|' : u'|' + words;
        }
        from = m.capturedEnd();
    }
    out += QStringView(pattern).mid(from);
    return out;
}

} // namespace Vocabulary

RulePattern::RulePattern(const QString &pattern, bool caseInsensitive)
    : RulePattern(Vocabulary::expand(pattern, RuleSet::Core), pattern, caseInsensitive)
{
}

RulePattern::RulePattern(const QString &core, const QString &full, bool caseInsensitive)
    : m_caseInsensitive(caseInsensitive)
{
    m_core.text = core;
    m_full.text = full;
}

RulePattern::~RulePattern() = default;

const Regex &RulePattern::operator()(const RuleFeatures &features) const
{
    const bool core = features.rules == RuleSet::Core;
    const Form &form = core ? m_core : m_full;
    std::call_once(form.once, [&] {
        form.regex = std::make_unique<Regex>(core ? form.text : Vocabulary::expand(form.text, RuleSet::Full),
                                             m_caseInsensitive);
    });
    return *form.regex;
}
