#include "Regex.h"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>

// Setting up an ICU matcher costs more than matching a short row, so each pattern keeps one spare
// matcher to lend. A thread that finds it taken makes its own: no locks, no sharing of a matcher.
struct Regex::Compiled {
    std::unique_ptr<icu::RegexPattern> pattern;
    mutable std::atomic<icu::RegexMatcher *> spare{nullptr};

    ~Compiled() { delete spare.load(); }
};

namespace {

// Read-only alias of the QString's UTF-16 buffer: no copy, offsets carry over unchanged.
icu::UnicodeString alias(const QString &text)
{
    return icu::UnicodeString(false, reinterpret_cast<const UChar *>(text.utf16()), int32_t(text.size()));
}

std::unique_ptr<Regex::Compiled> compile(const QString &pattern, bool caseInsensitive,
                                         QString *error = nullptr)
{
    UParseError parseError{};
    parseError.offset = -1;
    UErrorCode status = U_ZERO_ERROR;
    const uint32_t flags = caseInsensitive ? UREGEX_CASE_INSENSITIVE : 0;
    std::unique_ptr<icu::RegexPattern> compiled(
        icu::RegexPattern::compile(alias(pattern), flags, parseError, status));
    if (U_FAILURE(status)) {
        if (error) {
            *error = QString::fromLatin1(u_errorName(status));
            if (parseError.offset >= 0)
                *error += QStringLiteral(" at offset ") + QString::number(parseError.offset);
        }
        return nullptr;
    }
    auto result = std::make_unique<Regex::Compiled>();
    result->pattern = std::move(compiled);
    return result;
}

// Case-insensitive ICU closes every set over case when it compiles it, which for \p{L} means visiting
// every letter: most of the time spent compiling the built-in patterns. The closure of \p{L} adds only
// U+0345 and that of \p{N} nothing (checked over every code point), so a built-in pattern's letter and
// number sets are written out closed and compiled case-sensitively, in a (?-i:…) group. Other members of
// such a class must be caseless for this (digits, "_", "+", "$"); a class holding anything else is kept.
QString withClosedSets(const QString &pattern)
{
    static const QString letter = QStringLiteral("\\p{L}"), number = QStringLiteral("\\p{N}");
    const auto closedMember = [&](QStringView at) {
        return at.startsWith(letter) ? QStringLiteral("\\p{L}\\x{345}") : number;
    };
    QString out;
    for (qsizetype i = 0; i < pattern.size();) {
        const QStringView rest = QStringView(pattern).mid(i);
        if (rest.startsWith(letter) || rest.startsWith(number)) {
            out += QStringLiteral("(?-i:[") + closedMember(rest) + QStringLiteral("])");
            i += letter.size();
        } else if (rest.startsWith(u'\\')) {
            out += rest.left(2);
            i += 2;
        } else if (rest.startsWith(u'[')) {
            // The class up to its closing bracket: rewritten when it holds a letter or number set and
            // otherwise only caseless members.
            QString members;
            bool hasSet = false, caseless = true;
            qsizetype j = 1;
            for (; j < rest.size() && rest[j] != u']'; ++j) {
                const QStringView member = rest.mid(j);
                if (member.startsWith(letter) || member.startsWith(number)) {
                    members += closedMember(member);
                    hasSet = true;
                    j += letter.size() - 1;
                } else if (member.startsWith(QLatin1StringView("\\d"))) {
                    members += member.left(2);
                    ++j;
                } else if (rest[j] == u'_' || rest[j] == u'+' || rest[j] == u'$') {
                    members += rest[j];
                } else {
                    caseless = false;
                    break;
                }
            }
            if (hasSet && caseless && j < rest.size()) {
                out += QStringLiteral("(?-i:[") + members + QStringLiteral("])");
                i += j + 1;
                continue;
            }
            // Kept as written, up to its closing bracket; a nested class leaves the whole pattern as is.
            qsizetype end = rest.size() > 1 && rest[1] == u'^' ? 2 : 1;
            if (end < rest.size() && rest[end] == u']')
                ++end;
            for (; end < rest.size() && rest[end] != u']'; ++end) {
                if (rest[end] == u'[')
                    return pattern;
                if (rest[end] == u'\\')
                    ++end;
            }
            out += rest.left(end + 1);
            i += end + 1;
        } else {
            out += rest.front();
            ++i;
        }
    }
    return out;
}

Regex::Match currentMatch(const icu::RegexMatcher &matcher)
{
    Regex::Match match;
    UErrorCode status = U_ZERO_ERROR;
    const int32_t count = matcher.groupCount();
    match.groups.reserve(count + 1);
    for (int32_t g = 0; g <= count; ++g) {
        const int32_t start = matcher.start(g, status);
        const int32_t end = matcher.end(g, status);
        match.groups.append(start < 0 ? TextRange{-1, 0} : TextRange{start, end - start});
    }
    return match;
}

/// A matcher borrowed from a pattern (or made afresh) and reset to `input`; given back when done.
class Lease {
public:
    Lease(const Regex::Compiled &compiled, const icu::UnicodeString &input) : m_compiled(compiled)
    {
        UErrorCode status = U_ZERO_ERROR;
        m_matcher = compiled.spare.exchange(nullptr);
        if (m_matcher)
            m_matcher->reset(input);
        else
            m_matcher = compiled.pattern->matcher(input, status);
        if (U_FAILURE(status)) {
            delete m_matcher;
            m_matcher = nullptr;
        }
    }
    ~Lease()
    {
        icu::RegexMatcher *empty = nullptr;
        if (m_matcher && !m_compiled.spare.compare_exchange_strong(empty, m_matcher))
            delete m_matcher;
    }
    Lease(const Lease &) = delete;
    Lease &operator=(const Lease &) = delete;

    icu::RegexMatcher *get() const { return m_matcher; }

private:
    const Regex::Compiled &m_compiled;
    icu::RegexMatcher *m_matcher = nullptr;
};

} // namespace

Regex::Regex(const QString &pattern, bool caseInsensitive)
    : m_pattern(compile(caseInsensitive ? withClosedSets(pattern) : pattern, caseInsensitive))
{
    if (!m_pattern) {
        std::fprintf(stderr, "built-in pattern does not compile: %s\n", qPrintable(pattern));
        std::abort();
    }
}

std::optional<Regex> Regex::tryCompile(const QString &pattern, bool caseInsensitive)
{
    Regex regex;
    regex.m_pattern = compile(pattern, caseInsensitive);
    if (!regex.m_pattern)
        return std::nullopt;
    return regex;
}

QString Regex::compileError(const QString &pattern, bool caseInsensitive)
{
    QString error;
    compile(pattern, caseInsensitive, &error);
    return error;
}

Regex::Regex(Regex &&) noexcept = default;
Regex &Regex::operator=(Regex &&) noexcept = default;
Regex::~Regex() = default;

std::optional<Regex::Match> Regex::match(const QString &text, qsizetype from) const
{
    if (from > text.size())
        return std::nullopt;
    const icu::UnicodeString input = alias(text);
    const Lease lease(*m_pattern, input);
    icu::RegexMatcher *matcher = lease.get();
    UErrorCode status = U_ZERO_ERROR;
    if (!matcher)
        return std::nullopt;
    if (!matcher->find(int64_t(from), status) || U_FAILURE(status))
        return std::nullopt;
    return currentMatch(*matcher);
}

namespace {

// Called by ICU every 10,000 steps of one search; false abandons it.
UBool spendUnit(const void *context, int32_t /*steps*/)
{
    int &left = *static_cast<int *>(const_cast<void *>(context));
    return --left > 0;
}

} // namespace

std::optional<Regex::Match> Regex::match(const QString &text, qsizetype from, Budget &budget) const
{
    if (budget.m_exhausted || from > text.size())
        return std::nullopt;
    const icu::UnicodeString input = alias(text);
    const Lease lease(*m_pattern, input);
    icu::RegexMatcher *matcher = lease.get();
    if (!matcher)
        return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    matcher->setMatchCallback(spendUnit, &budget.m_left, status);
    matcher->setStackLimit(8 << 20, status);
    const bool found = U_SUCCESS(status) && matcher->find(int64_t(from), status);
    if (U_FAILURE(status)) // stopped at the budget, out of stack, or ICU could not run it
        budget.m_exhausted = true;
    std::optional<Match> result;
    if (found && U_SUCCESS(status) && !budget.m_exhausted)
        result = currentMatch(*matcher);
    // The matcher may be lent again, to a search without a budget.
    UErrorCode ignored = U_ZERO_ERROR;
    matcher->setMatchCallback(nullptr, nullptr, ignored);
    return result;
}

bool Regex::contains(const QString &text) const
{
    const icu::UnicodeString input = alias(text);
    const Lease lease(*m_pattern, input);
    UErrorCode status = U_ZERO_ERROR;
    return lease.get() && lease.get()->find(0, status) && U_SUCCESS(status);
}

QList<Regex::Match> Regex::matchAll(const QString &text) const
{
    QList<Match> matches;
    const icu::UnicodeString input = alias(text);
    const Lease lease(*m_pattern, input);
    icu::RegexMatcher *matcher = lease.get();
    UErrorCode status = U_ZERO_ERROR;
    if (!matcher)
        return matches;
    while (matcher->find(status) && U_SUCCESS(status))
        matches.append(currentMatch(*matcher));
    return matches;
}

int Regex::groupCount() const
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(m_pattern->pattern->matcher(status));
    return U_SUCCESS(status) ? matcher->groupCount() : 0;
}
